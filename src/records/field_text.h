#pragma once

// How field data becomes 8-bit text: the plain, cleaned and UTF-16 routes, and
// a member read by its route.

#include <string>

#include "core/bytes.h"
#include "records/field_walk.h"
#include "records/record_kinds.h"

namespace orchidlamp {

// HexToText: each byte one character.
inline std::string PlainText(ByteView data) { return BytesToText(data); }
// HexToText then CleanControlChars.
std::string CleanText(ByteView data, bool keepLineBreaks);
// The data after its first byte as UTF-16 big-endian (UnicodeHexToText), cleaned.
std::string Utf16AfterLeadText(ByteView data, bool keepLineBreaks);

// A member read by its route; empty for a Computed member.
std::string RouteText(const FieldList& fields, const MemberSpec& member, bool keepLineBreaks);
inline std::string RouteText(const FieldList& fields, const MemberSpec& member) {
  return RouteText(fields, member, member.keepLineBreaks);
}

}  // namespace orchidlamp
