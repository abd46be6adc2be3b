#include "records/decoders.h"
#include "records/field_text.h"

namespace orchidlamp {
namespace {

// The 128-form is read the 8-bit way, never as UTF-16.
constexpr std::array<MemberSpec, 2> kMembers = {{
    {"Replace", "Replace", true, FieldRoute::Joined, 1, 129},
    {"With", "With", true, FieldRoute::Joined, 2, 130},
}};

RecordLabel Label(ByteView, const FieldList& fields) { return {RouteText(fields, kMembers[0], false)}; }

constexpr auto kIdentity = MemberIndices(kMembers, {"Replace"});

constexpr std::array<FrameBox, 2> kBoxes = {{{"Replace", "atr0"}, {"With", "atr1", {}, true}}};
constexpr FrameLayout kFrame{"AutoTextm", "AutoText", kBoxes};
static_assert(FrameShowsEachMemberOnce(kMembers, kFrame));

}  // namespace

const RecordForm kAutoTextForm = {
    kMembers,
    {"Export Selected AutoText Word", "Export All AutoText Words", "AutoText", "AutoText", "AutoText Words",
     "                           AutoText", {}, kIdentity},
    &kFrame};

const RecordDecoder kAutoTextDecoder = {RecordFields, nullptr, Label};

}  // namespace orchidlamp
