#pragma once

// The record field walk every decoder shares: a field list is a run of fields,
// each a 2-byte little-endian length, a type byte and that many data bytes. This
// works on the record's bytes and gives exactly what FindField gives on its hex
// text: the first field of a type, data clipped to what the list holds.

#include <array>
#include <cstdint>
#include <optional>

#include "core/bytes.h"

namespace orchidlamp {

// The list is walked once, when it is made: the types and starts of its first
// fields are kept, with a bit per type present, so a look-up of an absent type
// costs one step and a present one a scan of a few bytes instead of a walk. A
// longer list is walked on from the last kept field.
class FieldList {
 public:
  FieldList() = default;
  explicit FieldList(ByteView bytes);

  // The data of the first field of the type; empty when there is none.
  ByteView Find(int type) const { return Locate(type).data; }
  // The data of the field right after the first field of the type, when that
  // field has the same type (a second value under one code); empty otherwise.
  ByteView FindFollowing(int type) const;
  bool Has(int type) const { return Locate(type).found; }

  ByteView bytes() const { return bytes_; }

 private:
  struct Located {
    ByteView data;
    std::size_t next = 0;  // offset of the field after it
    bool found = false;
  };
  static constexpr std::size_t kKept = 16;
  static constexpr std::size_t kWalkEnded = static_cast<std::size_t>(-1);

  Located Locate(int type) const;
  Located At(std::size_t start) const;

  ByteView bytes_;
  std::size_t kept_ = 0;
  std::size_t walkOn_ = kWalkEnded;  // where the walk goes on past the kept fields
  std::array<std::uint64_t, 4> present_{};  // bit t: a kept field has type t
  std::array<std::uint8_t, kKept> types_{};
  std::array<std::uint32_t, kKept> starts_{};
};

// The field list of an ordinary record: from body byte 6 (after handle and uid).
FieldList RecordFields(ByteView body);
// The nested shape: the data of the first field 10 of the record's list, from
// `skip` bytes on.
FieldList NestedFields(ByteView body, std::size_t skip);

// A little-endian number read as HexToLong reads its reversed digits: only the
// low 32 bits count, signed; an absent field is 0.
std::int32_t LittleEndianNumber(ByteView data);
// The first `width` bytes as an unsigned little-endian number in a double, as
// the 48- and 64-bit time stamps are evaluated. Bytes missing from a short field
// count as zero low-order bytes.
double LittleEndianStamp(ByteView data, std::size_t width);

}  // namespace orchidlamp
