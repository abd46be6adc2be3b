#include "records/field_walk.h"

namespace orchidlamp {

FieldList::FieldList(ByteView bytes) : bytes_(bytes) {
  std::size_t p = 0;
  while (bytes_.size() - p >= 3) {
    if (kept_ == kKept) {
      walkOn_ = p;
      return;
    }
    const std::uint8_t type = bytes_[p + 2];
    present_[type >> 6] |= std::uint64_t{1} << (type & 63);
    types_[kept_] = type;
    starts_[kept_++] = static_cast<std::uint32_t>(p);
    const std::size_t next = p + 3 + ReadLE16(bytes_, p);
    if (next >= bytes_.size()) break;
    p = next;
  }
}

FieldList::Located FieldList::At(std::size_t start) const {
  const std::size_t length = ReadLE16(bytes_, start);
  return {ClippedSub(bytes_, start + 3, length), start + 3 + length, true};
}

FieldList::Located FieldList::Locate(int type) const {
  if (type < 0 || type > 255) return {};  // a type byte never matches
  if (present_[static_cast<std::size_t>(type) >> 6] >> (type & 63) & 1) {
    std::size_t i = 0;
    while (types_[i] != type) ++i;  // the bit says one is there
    return At(starts_[i]);
  }
  if (walkOn_ == kWalkEnded) return {};
  std::size_t p = walkOn_;
  while (bytes_.size() - p >= 3) {
    const std::size_t length = ReadLE16(bytes_, p);
    const std::size_t next = p + 3 + length;
    if (bytes_[p + 2] == type) return {ClippedSub(bytes_, p + 3, length), next, true};
    if (next >= bytes_.size()) break;
    p = next;
  }
  return {};
}

ByteView FieldList::FindFollowing(int type) const {
  const Located first = Locate(type);
  if (!first.found || first.next >= bytes_.size() || bytes_.size() - first.next < 3) return {};
  if (bytes_[first.next + 2] != type) return {};
  return ClippedSub(bytes_, first.next + 3, ReadLE16(bytes_, first.next));
}

FieldList RecordFields(ByteView body) { return FieldList(ClippedSub(body, 6, body.size())); }

FieldList NestedFields(ByteView body, std::size_t skip) {
  const ByteView outer = RecordFields(body).Find(10);
  return FieldList(ClippedSub(outer, skip, outer.size()));
}

std::int32_t LittleEndianNumber(ByteView data) {
  std::uint32_t value = 0;
  const std::size_t n = std::min<std::size_t>(data.size(), 4);
  for (std::size_t i = 0; i < n; ++i) value |= static_cast<std::uint32_t>(data[i]) << (8 * i);
  return static_cast<std::int32_t>(value);
}

double LittleEndianStamp(ByteView data, std::size_t width) {
  double value = 0;
  const std::size_t n = std::min(data.size(), width);
  for (std::size_t i = n; i-- > 0;) value = value * 256 + data[i];
  // The stamp is read as a fixed-width digit text: missing bytes are missing low
  // digits, so what exists keeps its high place.
  for (std::size_t i = n; i < width; ++i) value *= 256;
  return value;
}

}  // namespace orchidlamp
