#include "records/decoders.h"
#include "records/field_text.h"

namespace orchidlamp {
namespace {

constexpr std::array<MemberSpec, 2> kMembers = {{
    {"MemoTitle", "Title", false, FieldRoute::Paired, 1, 129},
    {"MemoText", "Memo", true, FieldRoute::Paired, 2, 130},
}};

RecordLabel Label(ByteView, const FieldList& fields) { return {RouteText(fields, kMembers[0], false)}; }

constexpr auto kIdentity = MemberIndices(kMembers, {"MemoTitle"});

constexpr std::array<FrameBox, 2> kBoxes = {{{"MemoTitle", "ct44"}, {"MemoText", "ct45", "", true}}};
constexpr FrameLayout kFrame{"Memo", "Memos", kBoxes};
static_assert(FrameShowsEachMemberOnce(kMembers, kFrame));

}  // namespace

const RecordForm kMemoForm = {
    kMembers,
    {"Export Selected Memo", "Export All Memos", "Memo", "Memos", "Memos", "                          Memos", {},
     kIdentity},
    &kFrame};

const RecordDecoder kMemoDecoder = {RecordFields, nullptr, Label};

}  // namespace orchidlamp
