#pragma once

// Desktop backups (zip archives) with one hostile trait each, made with libzip
// and, where libzip refuses to write the lie, patched afterwards. Shared by the
// tests that run them through the command line and the fuzz seeds.

#include <string>
#include <utility>
#include <vector>

#include "support/ipd_builder.h"

namespace orchidlamp::testing {

using ArchiveFiles = std::vector<std::pair<std::string, Bytes>>;

// The archive of these entries in this order, each deflated; names are taken
// as they are. With `password` every entry is AES-encrypted.
Bytes ZipBytes(const ArchiveFiles& files, const char* password = nullptr);

// Small shapes, by name: "inflates-past-size", "encrypted", "same-name",
// "dotdot-backslash", "drive-letter", "nul-in-name", "million-databases",
// "dat-states-4gib", "record-states-4gib", "bbb-in-bbb", "bbb-as-mac-ipd".
std::vector<std::pair<std::string, Bytes>> HostileArchives();

// `count` empty entries: past 65,535 the archive needs the zip64 records.
Bytes ManyEntriesArchive(std::size_t count);

}  // namespace orchidlamp::testing
