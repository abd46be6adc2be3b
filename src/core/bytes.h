#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace orchidlamp {

using Bytes = std::vector<std::uint8_t>;
using ByteView = std::span<const std::uint8_t>;

// Little-endian reads. Callers check the range first; these never bounds-check.
inline std::uint32_t ReadLE16(ByteView b, std::size_t at) {
  return static_cast<std::uint32_t>(b[at]) | (static_cast<std::uint32_t>(b[at + 1]) << 8);
}
inline std::uint32_t ReadLE32(ByteView b, std::size_t at) {
  return ReadLE16(b, at) | (ReadLE16(b, at + 2) << 16);
}

// The sub-view [offset, offset + length) clipped to what exists: field data that
// claims more bytes than remain yields the bytes that are there.
inline ByteView ClippedSub(ByteView b, std::size_t offset, std::size_t length) {
  if (offset >= b.size()) return {};
  return b.subspan(offset, std::min(length, b.size() - offset));
}

inline void Append(Bytes& to, ByteView bytes) { to.insert(to.end(), bytes.begin(), bytes.end()); }

// 8-bit text: one character per byte, no conversion.
inline std::string BytesToText(ByteView b) { return std::string(b.begin(), b.end()); }
inline ByteView TextBytes(std::string_view s) {
  return {reinterpret_cast<const std::uint8_t*>(s.data()), s.size()};
}

}  // namespace orchidlamp
