#pragma once

// How field data becomes 8-bit text: the plain, cleaned and UTF-16 routes, and
// a member read by its route. Each route appends to a text the caller owns, so a
// record's members can share one buffer; the returning forms are for single
// values.

#include <string>

#include "core/bytes.h"
#include "records/field_walk.h"
#include "records/record_kinds.h"

namespace orchidlamp {

// HexToText: each byte one character.
inline void AppendPlain(std::string& out, ByteView data) {
  out.append(reinterpret_cast<const char*>(data.data()), data.size());
}
// HexToText then CleanControlChars.
void AppendClean(std::string& out, ByteView data, bool keepLineBreaks);
// UnicodeBytesToText: UTF-16 big-endian to the code page, not cleaned.
void AppendUtf16(std::string& out, ByteView utf16be);
// The data after its first byte as UTF-16 big-endian (UnicodeHexToText), cleaned.
void AppendUtf16AfterLead(std::string& out, ByteView data, bool keepLineBreaks);
// A member read by its route; nothing for a Computed member.
void AppendRoute(std::string& out, const FieldList& fields, const MemberSpec& member, bool keepLineBreaks);

inline std::string PlainText(ByteView data) { return BytesToText(data); }
std::string CleanText(ByteView data, bool keepLineBreaks);
std::string Utf16AfterLeadText(ByteView data, bool keepLineBreaks);
std::string RouteText(const FieldList& fields, const MemberSpec& member, bool keepLineBreaks);
inline std::string RouteText(const FieldList& fields, const MemberSpec& member) {
  return RouteText(fields, member, member.keepLineBreaks);
}

}  // namespace orchidlamp
