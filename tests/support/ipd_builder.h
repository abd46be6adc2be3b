#pragma once

// Builds IPD backups and .dat files from field values, computing every length, so
// tests read as data: a record is its database, handle, uid and fields.

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "core/bytes.h"

namespace orchidlamp::testing {

Bytes Text(std::string_view text);      // 8-bit text as bytes
Bytes TextZ(std::string_view text);     // ... plus a terminating NUL
Bytes Utf16(std::u16string_view text);  // UTF-16 big-endian
Bytes Hex(std::string_view hex);        // "0A0B" as bytes
Bytes LE16(std::uint32_t v);
Bytes LE32(std::uint32_t v);
Bytes LE64(std::uint64_t v);
Bytes Concat(std::initializer_list<Bytes> parts);

struct Field {
  std::uint8_t type;
  Bytes data;
};
Bytes FieldList(const std::vector<Field>& fields);  // per field: 2-byte LE length, type, data

struct Record {
  std::uint16_t database = 0;
  Bytes body;  // handle, unique id, fields (what follows the version byte)
  std::uint8_t version = 0;
};
Bytes Body(std::uint16_t handle, std::uint32_t uid, const Bytes& payload);  // handle, uid, payload
Record FieldRecord(std::uint16_t database, const std::vector<Field>& fields, std::uint16_t handle = 1,
                   std::uint32_t uid = 0x01020304);
// An SMS record: the fixed header of the first field, then fields from body byte 73.
Record SmsRecord(std::uint16_t database, bool sent, std::uint64_t firstStamp, std::uint64_t secondStamp,
                 const std::vector<Field>& fields, std::uint16_t handle = 1);
Bytes RecordBytes(const Record& r);  // as the loader finds it: database id, length, version, body
Bytes NameBytes(std::string_view name);  // a name-table entry: length (NUL included), name, NUL
// A desktop backup's .dat file: the one-database header, the name entry, then `tail` as it stands.
Bytes DatFile(std::string_view name, const Bytes& tail);

class IpdBuilder {
 public:
  IpdBuilder& Database(std::string name);
  IpdBuilder& Add(const Record& r);
  IpdBuilder& Raw(const Bytes& bytes);  // between records: marker blocks and the like
  Bytes Build() const;
  std::string SpanOf(std::size_t recordIndex) const;  // the loader's tag of the i-th record added

 private:
  std::vector<std::string> names_;
  std::vector<Bytes> chunks_;
  std::vector<std::size_t> recordChunk_;
};

}  // namespace orchidlamp::testing
