#include "records/decoders.h"
#include "records/field_walk.h"
#include "records/text_routes.h"

namespace orchidlamp {
namespace {

// A plain field joined with its 128-form read the 8-bit way (never as UTF-16):
// a record holds one or the other, so the member is whichever is there.
std::string JoinedText(const FieldList& fields, int plainCode, bool keepLineBreaks) {
  const ByteView wide = fields.Find(plainCode + 128);
  return CleanText(fields.Find(plainCode), keepLineBreaks) + CleanText(ClippedSub(wide, 1, wide.size()), keepLineBreaks);
}

}  // namespace

DecodedAutoText DecodeAutoText(ByteView body) {
  const FieldList fields = RecordFields(body);
  return {JoinedText(fields, 1, true), JoinedText(fields, 2, true)};
}

std::string AutoTextLabel(ByteView body) { return JoinedText(RecordFields(body), 1, false); }

}  // namespace orchidlamp
