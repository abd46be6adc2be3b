#pragma once

// How decoders turn field data into 8-bit text. Each kind picks its routes; the
// differences between kinds (which route is cleaned, which may be UTF-16) are
// the system's behaviour and are kept.

#include <string>

#include "core/bytes.h"
#include "records/field_walk.h"

namespace orchidlamp {

// HexToText: each byte one character.
inline std::string PlainText(ByteView data) { return BytesToText(data); }
// HexToText then CleanControlChars.
std::string CleanText(ByteView data, bool keepLineBreaks);
// The data after its first byte as UTF-16 big-endian (UnicodeHexToText), cleaned.
std::string Utf16AfterLeadText(ByteView data, bool keepLineBreaks);

// A paired code: the UTF-16 form (plain + 128) when present with data, else the
// plain form. `cleanPlain` says whether the plain route is cleaned too.
std::string PairedText(const FieldList& fields, int utf16Code, int plainCode, bool keepLineBreaks,
                       bool cleanPlain = true);

}  // namespace orchidlamp
