#pragma once

// The IPD layout: a 42-byte header, the database-name table, then every record.
// The reader is lenient where the device files demand it: the magic is not
// compared, the count is read little-endian from bytes 40-41, and one marker
// block may stand between records.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/bytes.h"
#include "core/database_tree.h"
#include "core/message.h"

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

Result<NameTable> ReadNameTable(ByteView file);

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

// Calls visit(const RecordLocation&) for every record from `start` to the end.
// A record running past the end of the file stops the walk with the records
// error; records visited before it stay visited.
template <class Visit>
Status WalkRecords(ByteView file, std::size_t start, Visit&& visit) {
  const std::size_t length = file.size();
  std::size_t p = start;
  while (p < length) {
    if (length - p < 6) return Fail(std::string(kFileRecordsError));
    RecordLocation r{p, ReadLE16(file, p), ReadLE32(file, p + 2)};
    if (r.length > length - p - 6) return Fail(std::string(kFileRecordsError));
    visit(static_cast<const RecordLocation&>(r));
    p = r.End();
    if (length >= 6 && p < length - 6 && IsRecordMarkerAt(file, p)) p += 6;
  }
  return Ok();
}

// The bytes of a span, clipped to the file (a span the index made is always inside).
ByteView BodyOf(ByteView file, const RecordSpan& span);

// Writers' pieces, as hex text.
std::string IpdHeaderHex(std::size_t databaseCount);  // the count modulo 256
std::string NameEntryHex(std::string_view name);      // length with NUL, name, NUL

}  // namespace orchidlamp
