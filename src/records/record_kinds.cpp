#include "records/record_kinds.h"

#include "records/decoders.h"
#include "records/field_text.h"

namespace orchidlamp {
namespace {

// Indexed by Kind.
constexpr std::array<KindSpec, kKindCount> kKinds = {{
    {Kind::BrowserBookmarks, ImageKey::None, WholeBody, &kBookmarkForm},
    {Kind::AutoText, ImageKey::None, RecordFields, &kAutoTextForm},
    {Kind::SmsMessages, ImageKey::receivedsms, SmsFields, &kSmsForm},
    {Kind::AddressBookAll, ImageKey::addressbook, NestedContactFields, &kContactForm},
    {Kind::AddressBook, ImageKey::mobile, RecordFields, &kContactForm},
    {Kind::Memos, ImageKey::memos, RecordFields, &kMemoForm},
    {Kind::Tasks, ImageKey::tasks, RecordFields, &kTaskForm},
    {Kind::CalendarAll, ImageKey::calendars, NestedAppointmentFields, &kAppointmentForm},
    {Kind::Calendar, ImageKey::calendars, RecordFields, &kAppointmentForm},
    {Kind::ServiceBook, ImageKey::servicebook, RecordFields, &kServiceBookForm},
    {Kind::PhoneCallLogs, ImageKey::received, RecordFields, &kCallForm},
}};

}  // namespace

const KindSpec& SpecOf(Kind kind) { return kKinds[static_cast<std::size_t>(kind)]; }

MemberList DecodeRecord(const KindSpec& kind, ByteView body, const DecodeContext& context) {
  const FieldList fields = kind.fields(body);
  MemberList members;
  members.reserve(kind.form->members.size());
  for (const MemberSpec& spec : kind.form->members) members.push_back({spec.name, RouteText(fields, spec)});
  if (kind.form->finish) kind.form->finish(body, fields, context, members);
  return members;
}

RecordLabel LabelRecord(const KindSpec& kind, ByteView body) {
  RecordLabel label = kind.form->label(body, kind.fields(body));
  if (label.image == ImageKey::None) label.image = kind.image;
  return label;
}

}  // namespace orchidlamp
