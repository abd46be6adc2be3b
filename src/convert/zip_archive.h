#pragma once

// The zip glue of desktop backups: extracting an archive flat into one folder,
// and making an archive of files at the strongest deflate level.

#include <cstdint>
#include <string>
#include <vector>

#include "core/result.h"

namespace orchidlamp {

// What an archive may unpack to. An entry or a whole archive is refused only
// when it is both larger than `ratio` times the archive file and larger than
// the matching floor, so real backups of any size pass and small bombs do not.
struct ExtractLimits {
  std::uint64_t ratio = 20;
  std::uint64_t totalFloor = std::uint64_t{2} << 30;  // 2 GiB
  std::uint64_t entryFloor = std::uint64_t{2} << 30;
  // A backup holds at most 32767 databases and a manifest; an archive past
  // the zip format's own 16-bit count is no backup.
  std::uint64_t maxEntries = 65535;
};

// Extracts every file entry of the archive directly into `folder`, dropping the
// entries' folder names ("Databases/1.dat" and "Databases\1.dat" both become
// "1.dat"); folder entries are skipped. The whole archive is checked before the
// first byte is written: entry names that are empty, ".", "..", hold a ".."
// component, are absolute or carry a drive letter, two entries that land on the
// same name, encrypted entries and sizes beyond the limits all refuse it. A
// failure while writing removes the file being written; files written before
// it stay in `folder` (the caller owns the folder).
Status ExtractArchive(const std::string& archivePath, const std::string& folder, const ExtractLimits& limits = {});

// The bytes of an entry made while the archive is written, so that content
// already in memory is deflated from where it lies instead of from a file
// written out first. Read fills `out` from the start onwards (Rewind goes back
// to the start) and returns how many bytes it gave, 0 once Size() have been
// given. CreateArchive may read several contents at once on other threads, so
// contents must not share anything they change.
class EntryContent {
 public:
  virtual ~EntryContent() = default;
  virtual std::uint64_t Size() const = 0;
  virtual void Rewind() = 0;
  virtual std::size_t Read(std::uint8_t* out, std::size_t n) = 0;
};

struct ArchiveEntry {
  std::string name;  // inside the archive, "/" as the separator
  std::string file;  // on disk
  // When set, the entry's bytes come from here instead of `file`, and it takes
  // `file`'s time and permissions, as if the bytes had been written to a file
  // beside it at that time. The content must live until CreateArchive returns.
  EntryContent* content = nullptr;
};

// Writes a new archive (replacing any file at `archivePath`) with the entries in
// the order given, each deflated at level 9.
Status CreateArchive(const std::string& archivePath, const std::vector<ArchiveEntry>& entries);

// The entry names of an archive in their stored order.
Result<std::vector<std::string>> ListArchive(const std::string& archivePath);

}  // namespace orchidlamp
