#include "records/text_routes.h"

#include "core/hex_text.h"

namespace orchidlamp {

std::string CleanText(ByteView data, bool keepLineBreaks) {
  return CleanControlChars(BytesToText(data), keepLineBreaks);
}

std::string Utf16AfterLeadText(ByteView data, bool keepLineBreaks) {
  return CleanControlChars(UnicodeBytesToText(ClippedSub(data, 1, data.size())), keepLineBreaks);
}

std::string PairedText(const FieldList& fields, int utf16Code, int plainCode, bool keepLineBreaks, bool cleanPlain) {
  const ByteView wide = fields.Find(utf16Code);
  if (!wide.empty()) return Utf16AfterLeadText(wide, keepLineBreaks);
  const ByteView plain = fields.Find(plainCode);
  return cleanPlain ? CleanText(plain, keepLineBreaks) : PlainText(plain);
}

}  // namespace orchidlamp
