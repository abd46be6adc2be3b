#include "core/hex_text.h"

#include <charconv>

#include "core/code_page_1256.h"
#include "core/result.h"

namespace orchidlamp {
namespace {

constexpr char kDigits[] = "0123456789ABCDEF";

int DigitValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return -1;
}

int CheckedDigit(char c) {
  int v = DigitValue(c);
  if (v < 0) throw CommandError("Invalid hexadecimal digit '" + std::string(1, c) + "' in record data");
  return v;
}

int TypeCodeValue(std::string_view code) {
  int value = 0;
  auto [ptr, ec] = std::from_chars(code.data(), code.data() + code.size(), value);
  if (ec != std::errc() || ptr != code.data() + code.size()) return -1;
  return value;
}

// The walk the three finders share; they differ only in where length, type and
// data sit and how far the next field starts.
struct Layout {
  std::size_t minDigits;
  std::size_t dataStart;  // 1-based
  std::size_t nextBase;   // next field at nextBase + 2 * length (1-based)
  std::int32_t (*length)(std::string_view);
  std::int32_t (*type)(std::string_view);
};

std::int32_t Le16Length(std::string_view s) {
  std::string swapped(Mid(s, 3, 2));
  swapped += Mid(s, 1, 2);
  return HexToLong(swapped);
}
std::int32_t TypeAt5(std::string_view s) { return HexToLong(Mid(s, 5, 2)); }
std::int32_t ByteAt1(std::string_view s) { return HexToLong(Mid(s, 1, 2)); }
std::int32_t ByteAt3(std::string_view s) { return HexToLong(Mid(s, 3, 2)); }

constexpr Layout kIpdLayout{6, 7, 7, Le16Length, TypeAt5};
constexpr Layout kLenTypeLayout{3, 5, 7, ByteAt1, ByteAt3};
constexpr Layout kTypeLenLayout{3, 5, 5, ByteAt3, ByteAt1};

struct Match {
  std::string data;
  std::string_view rest;  // the text from the field after the match
  bool found = false;
};

Match Walk(std::string_view fields, int wanted, const Layout& layout) {
  std::string_view s = fields;
  while (s.size() >= layout.minDigits) {
    const std::int64_t length = layout.length(s);
    const std::int64_t type = layout.type(s);
    const std::size_t digits = length > 0 ? static_cast<std::size_t>(length) * 2 : 0;
    const std::size_t next = layout.nextBase + digits;  // 1-based
    std::string_view rest = next - 1 < s.size() ? s.substr(next - 1) : std::string_view{};
    if (type == wanted) return {std::string(Mid(s, layout.dataStart, digits)), rest, true};
    s = rest;
  }
  return {};
}

}  // namespace

std::string_view Mid(std::string_view s, std::size_t start, std::size_t length) {
  if (start < 1 || start > s.size()) return {};
  return s.substr(start - 1, length);
}

std::int32_t HexToLong(std::string_view hex) {
  if (hex.size() > 8) hex = hex.substr(hex.size() - 8);
  std::uint32_t value = 0;
  for (char c : hex) value = (value << 4) | static_cast<std::uint32_t>(CheckedDigit(c));
  return static_cast<std::int32_t>(value);
}

std::string ByteToHex(std::int64_t value) {
  const auto v = static_cast<std::uint64_t>(value);
  return {kDigits[(v >> 4) & 0xF], kDigits[v & 0xF]};
}

std::string HexToLE16(std::string_view hexNumber) {
  if (hexNumber.empty() || hexNumber.size() > 4) return {};
  std::string padded = std::string(4 - hexNumber.size(), '0') + std::string(hexNumber);
  return padded.substr(2, 2) + padded.substr(0, 2);
}

std::string ReverseHexBytes(std::string_view hex) {
  // Groups are cut from the start, so an odd text's lone last digit leads.
  std::string out;
  out.reserve(hex.size());
  std::size_t end = hex.size() % 2 ? hex.size() - 1 : hex.size();
  if (end != hex.size()) out.push_back(hex.back());
  for (std::size_t i = end; i >= 2; i -= 2) out.append(hex.substr(i - 2, 2));
  return out;
}

std::string TextToHex(std::string_view text) { return BytesToHex(TextBytes(text)); }

std::string BytesToHex(ByteView bytes) {
  std::string out(bytes.size() * 2, '0');
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    out[2 * i] = kDigits[bytes[i] >> 4];
    out[2 * i + 1] = kDigits[bytes[i] & 0xF];
  }
  return out;
}

std::string HexToText(std::string_view hex) {
  std::string out;
  out.reserve(hex.size() / 2 + 1);
  std::size_t i = 0;
  for (; i + 1 < hex.size(); i += 2)
    out.push_back(static_cast<char>(CheckedDigit(hex[i]) * 16 + CheckedDigit(hex[i + 1])));
  if (i < hex.size()) out.push_back(static_cast<char>(CheckedDigit(hex[i])));
  return out;
}

std::string HexToAnsiText(std::string_view hex) { return HexToText(hex); }

std::string UnicodeHexToText(std::string_view hex) {
  std::string out;
  out.reserve(hex.size() / 4);
  for (std::size_t i = 0; i + 4 <= hex.size(); i += 4)
    out.push_back(static_cast<char>(UnicodeToCp1256(static_cast<char16_t>(HexToLong(hex.substr(i, 4))))));
  return out;
}

std::string UnicodeBytesToText(ByteView utf16be) {
  std::string out;
  out.reserve(utf16be.size() / 2);
  for (std::size_t i = 0; i + 2 <= utf16be.size(); i += 2)
    out.push_back(static_cast<char>(UnicodeToCp1256(static_cast<char16_t>((utf16be[i] << 8) | utf16be[i + 1]))));
  return out;
}

std::string CleanControlChars(std::string_view text, bool keepLineBreaks) {
  std::string out;
  out.reserve(text.size());
  for (char c : text) {
    const auto code = static_cast<unsigned char>(c);
    if (code >= 32 || (keepLineBreaks && (code == 13 || code == 10))) out.push_back(c);
  }
  return out;
}

std::string FindField(std::string_view fields, std::string_view typeCode, int mode) {
  const int wanted = TypeCodeValue(typeCode);
  Match first = Walk(fields, wanted, kIpdLayout);
  if (mode != 2) return first.data;
  if (!first.found || first.rest.size() < kIpdLayout.minDigits) return {};
  if (TypeAt5(first.rest) != wanted) return {};
  const std::int32_t length = Le16Length(first.rest);
  return std::string(Mid(first.rest, kIpdLayout.dataStart, length > 0 ? static_cast<std::size_t>(length) * 2 : 0));
}

std::string FindFieldLenType(std::string_view fields, std::string_view typeCode) {
  return Walk(fields, TypeCodeValue(typeCode), kLenTypeLayout).data;
}

std::string FindFieldTypeLen(std::string_view fields, std::string_view typeCode) {
  return Walk(fields, TypeCodeValue(typeCode), kTypeLenLayout).data;
}

Bytes HexToBytes(std::string_view hex) {
  Bytes out(hex.size() / 2);
  for (std::size_t i = 0; i < out.size(); ++i)
    out[i] = static_cast<std::uint8_t>(CheckedDigit(hex[2 * i]) * 16 + CheckedDigit(hex[2 * i + 1]));
  return out;
}

}  // namespace orchidlamp
