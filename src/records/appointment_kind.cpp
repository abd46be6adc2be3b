#include "records/decoders.h"
#include "records/field_text.h"
#include "records/record_date.h"

namespace orchidlamp {
namespace {

// In the nested shape the appointment's list follows 4 bytes inside field 10.
constexpr std::size_t kNestedSkip = 4;

// The calendar's plain route is not cleaned, unlike its UTF-16 route; kept so.
// Its codes do not all pair as plain + 128: location is 132 / 3 and the notes
// 131 / 4. Duration is never filled.
constexpr std::array<MemberSpec, 6> kMembers = {{
    {"Subject", "Subject", false, FieldRoute::PairedRaw, 2, 130},
    {"Location", "Location", false, FieldRoute::PairedRaw, 3, 132},
    {"Start", "Start"},
    {"End", "End"},
    {"Duration", "Duration"},
    {"AppointmentNotes", "Notes", true, FieldRoute::PairedRaw, 4, 131},
}};

void SetMinutes(MemberValues& m, std::size_t member, const FieldList& fields, int code, double timeZoneHours) {
  const std::int32_t minutes = LittleEndianNumber(ClippedSub(fields.Find(code), 0, 4));
  m.Set(member, [&](std::string& text) { AppendRecordDate(text, minutes, kMinutesPerDay, timeZoneHours); });
}

void Finish(ByteView, const FieldList& fields, const DecodeContext& context, MemberValues& m) {
  SetMinutes(m, MemberIndex(kMembers, "Start"), fields, 6, context.timeZoneHours);
  SetMinutes(m, MemberIndex(kMembers, "End"), fields, 7, context.timeZoneHours);
}

RecordLabel Label(ByteView, const FieldList& fields) { return {RouteText(fields, kMembers[0], false)}; }

constexpr auto kIdentity = MemberIndices(kMembers, {"Subject"});

// Start and end share the "Start" row: the appointment's span reads left to right.
constexpr std::array<FrameBox, 6> kBoxes = {{
    {"Subject", "ct34"},
    {"Location", "ct35"},
    {"Start", "ct36"},
    {"End", "ct37", {}, false, true},
    {"Duration", "ct38"},
    {"AppointmentNotes", "ct39", {}, true},
}};
constexpr FrameLayout kFrame{"Calendar", "Calendar", kBoxes};
static_assert(FrameShowsEachMemberOnce(kMembers, kFrame));

}  // namespace

const RecordForm kAppointmentForm = {
    kMembers,
    {"Export Selected Calendar", "Export All Calendar", "Calendar", "Calendar", "Calendar",
     "                          Calendar", {}, kIdentity},
    &kFrame};

const RecordDecoder kAppointmentDecoder = {RecordFields, Finish, Label};
const RecordDecoder kNestedAppointmentDecoder = {[](ByteView body) { return NestedFields(body, kNestedSkip); },
                                                 Finish, Label};

}  // namespace orchidlamp
