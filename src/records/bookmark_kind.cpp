#include "core/hex_text.h"
#include "records/decoders.h"
#include "records/field_text.h"

namespace orchidlamp {
namespace {

constexpr std::array<MemberSpec, 2> kMembers = {{
    {"BookmarkName", "Name", true},
    {"BookmarkUrl", "Url", true},
}};

constexpr std::string_view kNameMarker = "040100";
constexpr std::string_view kUrlMarker = "001200";

// The text behind a marker is searched in the record's hex text, at any digit
// position (a hit may straddle two bytes). A missing marker runs the same
// arithmetic from position 0.
void AppendTextBehind(std::string& out, std::string_view hex, std::string_view marker, bool keepLineBreaks) {
  const auto found = hex.find(marker);
  const std::size_t p = found == std::string_view::npos ? 0 : found + 1;  // 1-based, 0 when absent
  auto mid = [&](std::size_t start, std::size_t length) -> std::string_view {
    if (start < 1 || start > hex.size()) return {};
    return hex.substr(start - 1, length);
  };
  const std::int32_t length = HexToLong(mid(p + 6, 2));
  out += CleanControlChars(HexToText(mid(p + 8, 2 * static_cast<std::size_t>(length))), keepLineBreaks);
}

void Finish(ByteView body, const FieldList&, const DecodeContext&, MemberValues& m) {
  const std::string hex = BytesToHex(body);
  for (const auto& [member, marker] : {std::pair{MemberIndex(kMembers, "BookmarkName"), kNameMarker},
                                       std::pair{MemberIndex(kMembers, "BookmarkUrl"), kUrlMarker}}) {
    const bool keepLineBreaks = kMembers[member].keepLineBreaks;
    const std::string_view behind = marker;  // a lambda below reads it: no structured binding
    m.Set(member, [&](std::string& text) { AppendTextBehind(text, hex, behind, keepLineBreaks); });
  }
}

RecordLabel Label(ByteView body, const FieldList&) {
  RecordLabel label;
  AppendTextBehind(label.text, BytesToHex(body), kNameMarker, false);
  return label;
}

// The URL, not the name, decides whether a bookmark is written.
constexpr auto kIdentity = MemberIndices(kMembers, {"BookmarkUrl"});

constexpr std::array<FrameBox, 2> kBoxes = {{{"BookmarkName", "bbkN1", ""}, {"BookmarkUrl", "bbkN2", ""}}};
constexpr FrameLayout kFrame{"BBookmarks", "", kBoxes};
static_assert(FrameShowsEachMemberOnce(kMembers, kFrame));

}  // namespace

const RecordForm kBookmarkForm = {
    kMembers,
    {"Export Selected Browser Bookmark", "Export All Browser Bookmarks", "", "", "",
     "                         Browser Bookmarks", {}, kIdentity},
    &kFrame};

// Bookmarks are not walked as fields: their "list" is the whole body, searched as hex.
const RecordDecoder kBookmarkDecoder = {[](ByteView body) { return FieldList(body); }, Finish, Label};

}  // namespace orchidlamp
