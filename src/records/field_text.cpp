#include "records/field_text.h"

#include "core/hex_text.h"

namespace orchidlamp {

std::string CleanText(ByteView data, bool keepLineBreaks) {
  return CleanControlChars(BytesToText(data), keepLineBreaks);
}

std::string Utf16AfterLeadText(ByteView data, bool keepLineBreaks) {
  return CleanControlChars(UnicodeBytesToText(ClippedSub(data, 1, data.size())), keepLineBreaks);
}

std::string RouteText(const FieldList& fields, const MemberSpec& member, bool keepLineBreaks) {
  switch (member.route) {
    case FieldRoute::Computed:
      return {};
    case FieldRoute::Clean:
      return CleanText(fields.Find(member.code), keepLineBreaks);
    case FieldRoute::Paired:
    case FieldRoute::PairedRaw: {
      const ByteView wide = fields.Find(member.wideCode);
      if (!wide.empty()) return Utf16AfterLeadText(wide, keepLineBreaks);
      const ByteView plain = fields.Find(member.code);
      return member.route == FieldRoute::Paired ? CleanText(plain, keepLineBreaks) : PlainText(plain);
    }
    case FieldRoute::Joined: {
      // A record holds one form or the other, so the member is whichever is there.
      const ByteView wide = fields.Find(member.wideCode);
      return CleanText(fields.Find(member.code), keepLineBreaks) +
             CleanText(ClippedSub(wide, 1, wide.size()), keepLineBreaks);
    }
  }
  return {};
}

}  // namespace orchidlamp
