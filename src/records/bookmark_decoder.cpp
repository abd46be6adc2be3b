#include "core/hex_text.h"
#include "records/decoders.h"
#include "records/text_routes.h"

namespace orchidlamp {
namespace {

// Bookmarks are not walked as fields: the text behind a marker is searched in the
// record's hex text, at any digit position (a hit may straddle two bytes). A
// missing marker runs the same arithmetic from position 0.
std::string TextBehind(std::string_view hex, std::string_view marker, bool keepLineBreaks) {
  const auto found = hex.find(marker);
  const std::size_t p = found == std::string_view::npos ? 0 : found + 1;  // 1-based, 0 when absent
  const std::int32_t length = HexToLong(Mid(hex, p + 6, 2));
  return CleanControlChars(HexToText(Mid(hex, p + 8, 2 * static_cast<std::size_t>(length))), keepLineBreaks);
}

constexpr std::string_view kNameMarker = "040100";
constexpr std::string_view kUrlMarker = "001200";

}  // namespace

DecodedBookmark DecodeBookmark(ByteView body) {
  const std::string hex = BytesToHex(body);
  return {TextBehind(hex, kNameMarker, true), TextBehind(hex, kUrlMarker, true)};
}

std::string BookmarkLabel(ByteView body) { return TextBehind(BytesToHex(body), kNameMarker, false); }

}  // namespace orchidlamp
