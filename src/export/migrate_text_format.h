#pragma once

// Small text forms the migration writers share: base64, vCard/iCalendar value
// escaping and line folding, CSV and HTML quoting.

#include <string>
#include <string_view>

#include "core/bytes.h"

namespace orchidlamp {

// RFC 4648 base64, with padding, on one line.
std::string Base64(ByteView bytes);

// A TEXT value with `\`, `,`, `;` escaped and every line break (CR LF, CR or LF)
// as `\n`.
std::string EscapeContentValue(std::string_view text);

// One content line ("NAME;PARAMS:value") folded so that no line exceeds 75
// octets, never inside a UTF-8 sequence; continuation lines start with one
// space. Every line ends in CR LF.
std::string FoldContentLine(std::string_view line);

// An RFC 4180 field: quoted (quotes doubled) when it holds `,`, `"`, CR or LF.
std::string CsvField(std::string_view text);

// `&`, `<`, `>` and `"` as HTML entities.
std::string EscapeHtml(std::string_view text);

}  // namespace orchidlamp
