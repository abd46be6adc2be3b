#pragma once

// Builds IPD backups from field values, computing every length, so tests read as
// data: a record is its database, handle, uid and fields; a backup is its names
// and records.

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "core/bytes.h"

namespace orchidlamp::testing {

// 8-bit text as bytes.
Bytes Text(std::string_view text);
// 8-bit text plus a terminating NUL.
Bytes TextZ(std::string_view text);
// UTF-16 big-endian of the code units given.
Bytes Utf16(std::u16string_view text);
// Hex text ("0A0B") as bytes.
Bytes Hex(std::string_view hex);
Bytes LE16(std::uint32_t v);
Bytes LE32(std::uint32_t v);
Bytes LE64(std::uint64_t v);
Bytes Concat(std::initializer_list<Bytes> parts);

struct Field {
  std::uint8_t type;
  Bytes data;
};
// 2-byte LE length, type, data.
Bytes FieldBytes(const Field& f);
Bytes FieldList(const std::vector<Field>& fields);

struct Record {
  std::uint16_t database = 0;
  Bytes body;  // handle, unique id, fields (what follows the version byte)
  std::uint8_t version = 0;
};

// A body: 2-byte handle, 4-byte uid, then the payload as it stands.
Bytes Body(std::uint16_t handle, std::uint32_t uid, const Bytes& payload);
// An ordinary record of fields.
Record FieldRecord(std::uint16_t database, const std::vector<Field>& fields, std::uint16_t handle = 1,
                   std::uint32_t uid = 0x01020304);
// An SMS record: the fixed header of the first field, then fields from body byte 73.
Record SmsRecord(std::uint16_t database, bool sent, std::uint64_t firstStamp, std::uint64_t secondStamp,
                 const std::vector<Field>& fields, std::uint16_t handle = 1);

class IpdBuilder {
 public:
  IpdBuilder& Database(std::string name);
  IpdBuilder& Add(const Record& r);
  // Raw bytes between records (marker blocks and the like).
  IpdBuilder& Raw(const Bytes& bytes);
  Bytes Build() const;

  // The span text the loader gives the i-th record added (0-based).
  std::string SpanOf(std::size_t recordIndex) const;

 private:
  std::vector<std::string> names_;
  std::vector<Bytes> chunks_;
  std::vector<std::ptrdiff_t> recordChunk_;
};

// Whole record bytes as the loader finds them: database id, length, version, body.
Bytes RecordBytes(const Record& r);

}  // namespace orchidlamp::testing
