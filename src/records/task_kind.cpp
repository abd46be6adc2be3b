#include "records/decoders.h"
#include "records/field_text.h"

namespace orchidlamp {
namespace {

constexpr std::array<MemberSpec, 4> kMembers = {{
    {"TaskName", "Task", false, FieldRoute::Paired, 2, 130},
    {"TaskStatus", "Status"},
    {"Priority", "Priority"},
    {"TaskNotes", "Notes", true, FieldRoute::Paired, 3, 131},
}};

constexpr std::array<std::string_view, 5> kStatusWords = {"Not Started", "In Progress", "Completed", "Waiting",
                                                          "Deferred"};
// 0 is the most urgent.
constexpr std::array<std::string_view, 3> kPriorityWords = {"High", "Normal", "Low"};

// The first data byte mapped through a word list; an absent field reads as 0.
template <std::size_t N>
std::string_view WordOf(const FieldList& fields, int code, const std::array<std::string_view, N>& words) {
  const ByteView data = fields.Find(code);
  const std::size_t value = data.empty() ? 0 : data[0];
  return value < N ? words[value] : std::string_view();
}

void Finish(ByteView, const FieldList& fields, const DecodeContext&, MemberValues& m) {
  m.Set(MemberIndex(kMembers, "TaskStatus"), WordOf(fields, 9, kStatusWords));
  m.Set(MemberIndex(kMembers, "Priority"), WordOf(fields, 10, kPriorityWords));
}

RecordLabel Label(ByteView, const FieldList& fields) { return {RouteText(fields, kMembers[0], false)}; }

constexpr auto kIdentity = MemberIndices(kMembers, {"TaskName"});

constexpr std::array<FrameBox, 4> kBoxes = {{
    {"TaskName", "ct40"},
    {"TaskStatus", "ct41"},
    {"Priority", "ct42"},
    {"TaskNotes", "ct43", {}, true},
}};
constexpr FrameLayout kFrame{"Task", "Tasks", kBoxes};
static_assert(FrameShowsEachMemberOnce(kMembers, kFrame));

}  // namespace

const RecordForm kTaskForm = {
    kMembers,
    {"Export Selected Task", "Export All Tasks", "Task", "Tasks", "Tasks", "                          Tasks", {},
     kIdentity},
    &kFrame};

const RecordDecoder kTaskDecoder = {RecordFields, Finish, Label};

}  // namespace orchidlamp
