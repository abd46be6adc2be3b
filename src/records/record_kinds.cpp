#include "records/record_kinds.h"

#include "records/decoders.h"
#include "records/field_text.h"

namespace orchidlamp {
namespace {

// Indexed by Kind.
constexpr std::array<KindSpec, kKindCount> kKinds = {{
    {Kind::BrowserBookmarks, ImageKey::None, &kBookmarkForm, &kBookmarkDecoder},
    {Kind::AutoText, ImageKey::None, &kAutoTextForm, &kAutoTextDecoder},
    {Kind::SmsMessages, ImageKey::receivedsms, &kSmsForm, &kSmsDecoder},
    {Kind::AddressBookAll, ImageKey::addressbook, &kContactForm, &kNestedContactDecoder},
    {Kind::AddressBook, ImageKey::mobile, &kContactForm, &kContactDecoder},
    {Kind::Memos, ImageKey::memos, &kMemoForm, &kMemoDecoder},
    {Kind::Tasks, ImageKey::tasks, &kTaskForm, &kTaskDecoder},
    {Kind::CalendarAll, ImageKey::calendars, &kAppointmentForm, &kNestedAppointmentDecoder},
    {Kind::Calendar, ImageKey::calendars, &kAppointmentForm, &kAppointmentDecoder},
    {Kind::ServiceBook, ImageKey::servicebook, &kServiceBookForm, &kServiceBookDecoder},
    {Kind::PhoneCallLogs, ImageKey::received, &kCallForm, &kCallDecoder},
}};

}  // namespace

const KindSpec& SpecOf(Kind kind) { return kKinds[static_cast<std::size_t>(kind)]; }

void DecodeRecordInto(const KindSpec& kind, ByteView body, const DecodeContext& context, MemberValues& values) {
  const FieldList fields = kind.decoder->fields(body);
  const std::span<const MemberSpec> members = kind.form->members;
  values.Reset(members.size());
  for (std::size_t i = 0; i < members.size(); ++i)
    if (members[i].route != FieldRoute::Computed)
      values.Set(i, [&](std::string& text) { AppendRoute(text, fields, members[i], members[i].keepLineBreaks); });
  if (kind.decoder->finish) kind.decoder->finish(body, fields, context, values);
}

MemberList DecodeRecord(const KindSpec& kind, ByteView body, const DecodeContext& context) {
  MemberValues values;
  DecodeRecordInto(kind, body, context, values);
  MemberList members;
  members.reserve(values.size());
  for (std::size_t i = 0; i < values.size(); ++i)
    members.push_back({kind.form->members[i].name, std::string(values[i])});
  return members;
}

RecordLabel LabelRecord(const KindSpec& kind, ByteView body) {
  RecordLabel label = kind.decoder->label(body, kind.decoder->fields(body));
  if (label.image == ImageKey::None) label.image = kind.image;
  return label;
}

}  // namespace orchidlamp
