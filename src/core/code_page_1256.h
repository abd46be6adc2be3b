#pragma once

// The Arabic single-byte code page (Windows-1256): every 8-bit text of the system
// is in it. The tables come from the platform's iconv and are built once.

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace orchidlamp {

// The code page byte of a UTF-16 code unit; '?' where the code page has none.
std::uint8_t UnicodeToCp1256(char16_t unit);
// The same as a table indexed by the code unit, for loops over many units.
const std::array<std::uint8_t, 65536>& Cp1256OfUnicode();

// 8-bit text as UTF-8, for display and standard output.
std::string Cp1256ToUtf8(std::string_view text);
// The code point of each byte: for writers that convert and escape in one pass.
const std::array<char32_t, 256>& Cp1256CodePoints();

// UTF-8 (what a user types) as 8-bit text; '?' for what has no byte.
std::string Utf8ToCp1256(std::string_view utf8);

}  // namespace orchidlamp
