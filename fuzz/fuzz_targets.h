#pragma once

// The fuzzing entry functions, one per input surface. Each takes arbitrary
// bytes, drives the real code over them and returns 0; a crash, a leak or a
// sanitizer report is the only way one can "fail". They are plain functions so
// that the ordinary build can replay a corpus through them without libFuzzer.

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace orchidlamp::fuzz {

// The IPD loader over the bytes as a file: the tree, the index and every label.
int FuzzIpdLoader(const std::uint8_t* data, std::size_t size);
// Every decoder and the service-book panel over every record of the loaded
// bytes, whatever database the record belongs to, and the node-click dispatch.
int FuzzRecordDecoders(const std::uint8_t* data, std::size_t size);
// The formatters of every record in both forms, and the whole-tree export to
// text and CSV, and media extraction.
int FuzzExport(const std::uint8_t* data, std::size_t size);
// Split, merge and the service-book editor: the first bytes choose the ticks
// and the editor's values, the rest is the backup.
int FuzzEditing(const std::uint8_t* data, std::size_t size);
// The desktop-backup reader. Bytes that start as a zip are the archive as it
// comes; anything else is cut into a manifest and .dat files that are zipped
// first, so the XML and the .dat reader are reached too.
int FuzzDesktopBackup(const std::uint8_t* data, std::size_t size);
// A backup whose walk stopped part way, then export, media and split on the part
// read, as `--keep-going` runs them. The first byte picks the node ticked.
int FuzzKeepGoing(const std::uint8_t* data, std::size_t size);
// The stored time-zone and delimiter texts (each a length byte and the text),
// then a backup loaded and formatted under the settings derived from them.
int FuzzSettings(const std::uint8_t* data, std::size_t size);

// The migration export with a fuzzed code page and kind choice, every file it
// writes parsed back (vCard folding, libical, libxml2, the memo count).
int FuzzMigration(const std::uint8_t* data, std::size_t size);

struct FuzzTarget {
  std::string_view name;
  int (*run)(const std::uint8_t* data, std::size_t size);
};

// Every target, by the name of its corpus folder and its libFuzzer program.
std::span<const FuzzTarget> AllTargets();

}  // namespace orchidlamp::fuzz
