#pragma once

// The IPD layout: a 42-byte header, the database-name table, then every record.
// The reader is lenient where the device files demand it: the magic is not
// compared, the count is read little-endian from bytes 40-41, and marker blocks
// may stand between records. One walk reads them all: the loader, the merge's
// second file and both ends of the desktop backups (whose .dat files hold one
// name and whose software passes over markers its own way).

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "core/bytes.h"
#include "core/database_tree.h"
#include "core/result.h"

namespace orchidlamp {

inline constexpr std::string_view kIpdMagic = "Inter@ctive Pager Backup/Restore File\n";
inline constexpr std::size_t kIpdHeaderSize = 42;
// The 40 bytes every writer starts with: the magic, version 2 and 0x00.
inline constexpr std::string_view kIpdPrefixHex =
    "496E746572406374697665205061676572204261636B75702F526573746F72652046696C650A0200";

inline constexpr std::string_view kDbTitlesError = "Error Parsing the file, couldn't read the DB titles";
inline constexpr std::string_view kFileRecordsError = "Error Parsing the file, couldn't read the file records";

struct NameEntry {
  std::size_t offset = 0;  // of the entry's 2-byte length
  std::uint32_t length = 0;  // name bytes, NUL included
  std::string name;          // as read
  std::string cleaned;       // control characters removed

  // The entry as it stands in the file: length and name.
  ByteView Bytes(ByteView file) const { return file.subspan(offset, 2 + length); }
};

struct NameTable {
  std::vector<NameEntry> entries;
  std::size_t recordsStart = kIpdHeaderSize;
};

// How many name entries follow the header: the handheld's files say so in bytes
// 40-41; a desktop backup's .dat file holds exactly one.
enum class NameCount { FromHeader, One };

Result<NameTable> ReadNameTable(ByteView file, NameCount names = NameCount::FromHeader);

struct RecordLocation {
  std::size_t offset = 0;  // of the record's database id
  std::uint32_t databaseId = 0;
  std::uint32_t length = 0;  // bytes after the length field

  std::size_t End() const { return offset + 6 + length; }  // one past the last byte
  // The body: from the record handle (offset + 7) through the last byte.
  RecordSpan Span() const {
    return {static_cast<std::int64_t>(offset) + 7, static_cast<std::int64_t>(offset) + 5 + length};
  }
  ByteView Whole(ByteView file) const { return file.subspan(offset, 6 + length); }
};

// The five bytes FF FF 02 00 00 or FF FF 02 00 01 at p.
bool IsRecordMarkerAt(ByteView file, std::size_t p);
bool IsMarkerAt(ByteView file, std::size_t p, std::uint8_t last);

// How marker blocks (FF FF 02 00 00 / 01) standing after a record are passed over.
enum class MarkerSkip {
  // The handheld loader: one block of either kind, and only when something
  // follows it; a block at the very end is read as a record and fails the walk.
  OneBeforeRecord,
  // The desktop software: a 00 block, then a 01 block, each when present, as
  // long as more than one byte follows the record. A 00 block after a 01 block
  // is read as a record.
  ZeroThenOne,
};

// The offset after the marker blocks `skip` passes over at p, just past a record.
inline std::size_t SkipMarkers(ByteView file, std::size_t p, MarkerSkip skip) {
  const std::size_t size = file.size();
  if (skip == MarkerSkip::OneBeforeRecord) return size >= 6 && p < size - 6 && IsRecordMarkerAt(file, p) ? p + 6 : p;
  if (p + 1 >= size) return p;
  if (IsMarkerAt(file, p, 0x00)) p += 6;
  if (IsMarkerAt(file, p, 0x01)) p += 6;
  return p;
}

// Where a record walk ended. A walk that stopped part way keeps the records it
// visited before the stop (the visitor has seen them) and says why it stopped.
struct RecordWalk {
  std::size_t records = 0;  // records visited
  std::size_t end = 0;      // the offset the walk stopped at
  std::optional<Failure> failure;

  bool whole() const { return !failure; }
  explicit operator bool() const { return whole(); }
  Status status() const { return failure ? Status(*failure) : Ok(); }
};

// Calls visit(const RecordLocation&) for every record from `start` to the end.
// A record header or body running past the end of the file stops the walk with
// the records error. The visitor may return a Status: a failure stops the walk
// with that failure.
template <class Visit>
RecordWalk WalkRecords(ByteView file, std::size_t start, Visit&& visit,
                       MarkerSkip skip = MarkerSkip::OneBeforeRecord) {
  const std::size_t size = file.size();
  RecordWalk walk;
  std::size_t p = start;
  while (p < size) {
    if (size - p < 6) break;
    const RecordLocation r{p, ReadLE16(file, p), ReadLE32(file, p + 2)};
    if (r.length > size - p - 6) break;
    if constexpr (std::is_void_v<std::invoke_result_t<Visit&, const RecordLocation&>>) {
      visit(r);
    } else if (Status visited = visit(r); !visited) {
      walk.failure = visited.failure();
      walk.end = p;
      return walk;
    }
    ++walk.records;
    p = SkipMarkers(file, r.End(), skip);
  }
  walk.end = p;
  if (p < size) walk.failure = Fail(std::string(kFileRecordsError));
  return walk;
}

// Sizes `tree` for the records a walk from `start` will add: one counting walk,
// so every column and child list grows once however many records there are.
// `databaseNodes[id]` is the node of database id (kNoNode: none); `keeps(id)`
// says whether that database's records get nodes.
template <class Keeps>
void ReserveRecordNodes(DatabaseTree& tree, ByteView file, std::size_t start, const std::vector<NodeId>& databaseNodes,
                        Keeps&& keeps) {
  std::vector<std::size_t> perDatabase(databaseNodes.size(), 0);
  std::size_t known = 0;
  (void)WalkRecords(file, start, [&](const RecordLocation& r) {
    if (r.databaseId < perDatabase.size() && keeps(r.databaseId)) ++perDatabase[r.databaseId], ++known;
  });
  tree.Reserve(tree.size() + known);
  for (std::size_t i = 0; i < databaseNodes.size(); ++i)
    if (databaseNodes[i] != kNoNode) tree.ReserveChildren(databaseNodes[i], perDatabase[i]);
}

// The bytes of a span, clipped to the file (a span the index made is always inside).
ByteView BodyOf(ByteView file, const RecordSpan& span);

// Writers' pieces, as hex text.
std::string IpdHeaderHex(std::size_t databaseCount);  // the count modulo 256
std::string NameEntryHex(std::string_view name);      // length with NUL, name, NUL

}  // namespace orchidlamp
