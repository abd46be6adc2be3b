#include "records/record_kinds.h"

#include <array>

namespace orchidlamp {
namespace {

RecordLabel WithKindImage(Kind kind, std::string text) { return {std::move(text), InfoOf(kind).image}; }

const ContactPictureSink kNoPictures;

const ContactPictureSink& Pictures(const DecodeContext& c) { return c.pictures ? *c.pictures : kNoPictures; }

constexpr std::array<RecordKindRow, kKindCount> kRows = {{
    {Kind::BrowserBookmarks,
     [](ByteView b) { return WithKindImage(Kind::BrowserBookmarks, BookmarkLabel(b)); },
     [](ByteView b, const DecodeContext&) { return DecodeBookmark(b).Members(); }},
    {Kind::AutoText,
     [](ByteView b) { return WithKindImage(Kind::AutoText, AutoTextLabel(b)); },
     [](ByteView b, const DecodeContext&) { return DecodeAutoText(b).Members(); }},
    {Kind::SmsMessages,
     [](ByteView b) { return RecordLabel{SmsLabel(b), SmsIsSent(b) ? ImageKey::sent : ImageKey::receivedsms}; },
     [](ByteView b, const DecodeContext& c) { return DecodeSms(b, c.timeZoneHours).Members(); }},
    {Kind::AddressBookAll,
     [](ByteView b) { return WithKindImage(Kind::AddressBookAll, ContactLabel(b, true)); },
     [](ByteView b, const DecodeContext& c) {
       return DecodeContact(b, c.pictureNumber, true, Pictures(c)).Members();
     }},
    {Kind::AddressBook,
     [](ByteView b) { return WithKindImage(Kind::AddressBook, ContactLabel(b, false)); },
     [](ByteView b, const DecodeContext& c) {
       return DecodeContact(b, c.pictureNumber, false, Pictures(c)).Members();
     }},
    {Kind::Memos,
     [](ByteView b) { return WithKindImage(Kind::Memos, MemoLabel(b)); },
     [](ByteView b, const DecodeContext&) { return DecodeMemo(b).Members(); }},
    {Kind::Tasks,
     [](ByteView b) { return WithKindImage(Kind::Tasks, TaskLabel(b)); },
     [](ByteView b, const DecodeContext&) { return DecodeTask(b).Members(); }},
    {Kind::CalendarAll,
     [](ByteView b) { return WithKindImage(Kind::CalendarAll, AppointmentLabel(b, true)); },
     [](ByteView b, const DecodeContext& c) { return DecodeAppointment(b, true, c.timeZoneHours).Members(); }},
    {Kind::Calendar,
     [](ByteView b) { return WithKindImage(Kind::Calendar, AppointmentLabel(b, false)); },
     [](ByteView b, const DecodeContext& c) { return DecodeAppointment(b, false, c.timeZoneHours).Members(); }},
    {Kind::ServiceBook,
     [](ByteView b) { return WithKindImage(Kind::ServiceBook, ServiceBookLabel(b)); },
     nullptr},
    {Kind::PhoneCallLogs,
     [](ByteView b) { return RecordLabel{CallLabel(b), CallDirectionImage(b)}; },
     [](ByteView b, const DecodeContext& c) { return DecodeCall(b, c.timeZoneHours).Members(); }},
}};

}  // namespace

const RecordKindRow& RowOf(Kind kind) { return kRows[static_cast<std::size_t>(kind)]; }

}  // namespace orchidlamp
