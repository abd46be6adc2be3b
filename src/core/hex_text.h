#pragma once

// Hex text: record data as upper-case hex digits, two per byte, in file order,
// taken apart by 1-based positions. These primitives are the system's interface
// for record data; hot paths may work on bytes instead when the result is the same.

#include <cstdint>
#include <string>
#include <string_view>

#include "core/bytes.h"

namespace orchidlamp {

// What exists of [start, start + length) of `s`, start counted from 1; empty
// when start is 0 or past the end.
std::string_view Mid(std::string_view s, std::size_t start, std::size_t length = std::string_view::npos);

// Up to 8 digits, most significant first; only the rightmost 8 count. The empty
// text is 0, FFFFFFFF is -1. Throws CommandError on a non-hex digit.
std::int32_t HexToLong(std::string_view hex);

// Exactly two upper-case digits: the last two of the value's hex form.
std::string ByteToHex(std::int64_t value);

// A 1-4 digit hex number as 4 digits in little-endian byte order ("123" -> "2301");
// any other length gives the empty text.
std::string HexToLE16(std::string_view hexNumber);

// The digit pairs in reverse order ("0A0B0C" -> "0C0B0A").
std::string ReverseHexBytes(std::string_view hex);

// Each 8-bit character as two upper-case digits.
std::string TextToHex(std::string_view text);
std::string BytesToHex(ByteView bytes);

// Each digit pair as one 8-bit character. A lone last digit becomes one character
// of its own value (0-15).
std::string HexToText(std::string_view hex);
// 8-bit text already is the system's single-byte code page, so this is HexToText.
std::string HexToAnsiText(std::string_view hex);

// Each complete group of 4 digits is a UTF-16 code unit, converted to its byte in
// the Arabic code page (Windows-1256), "?" where that has none. A trailing
// incomplete group is ignored.
std::string UnicodeHexToText(std::string_view hex);
std::string UnicodeBytesToText(ByteView utf16be);

// Removes every character below 32; with keepLineBreaks, CR and LF stay.
std::string CleanControlChars(std::string_view text, bool keepLineBreaks);

// Field finders on hex text. The type code is decimal text ("10", "160").
// FindField: IPD layout (2-byte LE length, type, data). Mode 2 returns the data of
// the field right after the first match, and only if it has the same type.
std::string FindField(std::string_view fields, std::string_view typeCode, int mode = 1);
// Length (1 byte), type (1 byte), data, one further byte.
std::string FindFieldLenType(std::string_view fields, std::string_view typeCode);
// Type (1 byte), length (1 byte), data.
std::string FindFieldTypeLen(std::string_view fields, std::string_view typeCode);

// Hex text back to bytes (what writers do before writing). Pairs only; a lone last
// digit is dropped. Throws CommandError on a non-hex digit.
Bytes HexToBytes(std::string_view hex);

}  // namespace orchidlamp
