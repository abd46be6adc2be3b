#include "records/decoders.h"
#include "records/field_walk.h"
#include "records/record_date.h"
#include "records/text_routes.h"

namespace orchidlamp {
namespace {

// In the nested shape the appointment's list follows 4 bytes inside field 10.
constexpr std::size_t kNestedSkip = 4;

FieldList AppointmentFields(ByteView body, bool nested) {
  return nested ? NestedFields(body, kNestedSkip) : RecordFields(body);
}

// The calendar's plain route is not cleaned, unlike its UTF-16 route; kept so.
// The calendar's codes do not all pair as plain + 128: location is 132 / 3 and
// the notes 131 / 4.
std::string CalendarText(const FieldList& fields, int wideCode, int plainCode, bool keepLineBreaks) {
  return PairedText(fields, wideCode, plainCode, keepLineBreaks, /*cleanPlain=*/false);
}

std::string MinutesText(const FieldList& fields, int code, double timeZoneHours) {
  const std::int32_t minutes = LittleEndianNumber(ClippedSub(fields.Find(code), 0, 4));
  return RecordDateText(minutes, kMinutesPerDay, timeZoneHours);
}

}  // namespace

DecodedAppointment DecodeAppointment(ByteView body, bool nested, double timeZoneHours) {
  DecodedAppointment a;
  const FieldList fields = AppointmentFields(body, nested);
  a.Subject = CalendarText(fields, 130, 2, false);
  a.Location = CalendarText(fields, 132, 3, false);
  a.Start = MinutesText(fields, 6, timeZoneHours);
  a.End = MinutesText(fields, 7, timeZoneHours);
  a.AppointmentNotes = CalendarText(fields, 131, 4, true);
  return a;
}

std::string AppointmentLabel(ByteView body, bool nested) {
  return CalendarText(AppointmentFields(body, nested), 130, 2, false);
}

}  // namespace orchidlamp
