#pragma once

// Rebuilding a service-book record from the editor's 22 values. The values are
// the service-book panel's boxes, written back under the codes the panel reads
// them from; the handle and unique id of the source record are kept, the
// database id becomes 0.

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "core/result.h"
#include "core/workspace.h"

namespace orchidlamp {

using EditorValues = std::array<std::string, kServiceBookBoxes>;

inline constexpr std::string_view kBlankServiceBookValue = "Service-book name, UID, CID, UserID cannot be blank";

// The one-database file every editor save starts with: the header with count 1
// and the single name entry "Service Book".
inline constexpr std::string_view kServiceBookFilePrefixHex =
    "496E746572406374697665205061676572204261636B75702F526573746F72652046696C650A020001000D005365727669636520426F6F6B00";

struct BuiltRecord {
  std::string hex;                // the whole record, database id through last field byte
  std::optional<Message> refusal; // set (and hex empty) when the name, UID or CID was blank
};

// `code`: the source record as hex, database id through its last field byte.
// A blank name, UID or CID (values 17-19) gives no record and the blank-value
// message (critical icon); a blank user id (value 20) only leaves its field out.
// Throws CommandError when a numeric value is no number, when value 4 has fewer
// than five parts, or when a field or the record outgrows its 16-bit length.
BuiltRecord BuildRecord(std::string_view code, const EditorValues& values);

// 16-bit little-endian length, the type byte, the text's 8-bit characters and,
// when `terminate`, one 0x00 that the length counts. Throws CommandError past
// 65535 bytes.
std::string MakeStringField(std::string_view text, std::string_view typeHex, bool terminate);

// A numeric editor value: optional blanks, an optional sign, decimal digits.
// Throws CommandError naming the box otherwise.
std::int64_t ServiceBookNumber(std::string_view text, std::size_t box);

}  // namespace orchidlamp
