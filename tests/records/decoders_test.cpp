// Every kind's members and tree label, one row per record body (handle, uid, fields).

#include <gtest/gtest.h>

#include <algorithm>

#include "records/record_kinds.h"
#include "support/ipd_builder.h"

namespace orchidlamp {
namespace {

using namespace orchidlamp::testing;

Bytes Fields(const std::vector<testing::Field>& fields) { return Body(1, 2, FieldList(fields)); }
Bytes Lead(const Bytes& utf16) { return Concat({Hex("00"), utf16}); }
Bytes Sms(bool sent, std::uint64_t a, std::uint64_t b, const std::vector<testing::Field>& fields) {
  return SmsRecord(0, sent, a, b, fields).body;
}
// An SMS whose direction byte (body byte 9) is `flag`.
Bytes SmsFlag(std::uint8_t flag) { return Concat({Bytes(9), Bytes{flag}, Bytes(80)}); }

const Bytes kTwoNames = Fields({{32, Text("Ann")}, {32, Text("Lee")}, {6, Text("555")}});
const Bytes kWideContact = Fields({{183, Lead(Utf16(u"Dr"))}, {55, Text("Mr")}, {160, Lead(Utf16(u"\u0627"))},
                                   {160, Lead(Utf16(u"Bo"))}, {192, Lead(Utf16(u"a\r\nb"))}, {10, Text("2A3B")},
                                   {18, Text("x")}});
const Bytes kNestedContact = Fields({{32, Text("Outer")}, {10, FieldList({{32, Text("Ann")}, {32, Text("Lee")}})}});
const Bytes kLunch = Fields({{2, Text("Lunch\t")}, {3, Text("Cafe")}, {6, Hex("A0050000FF")}, {7, Hex("3C000000")},
                             {131, Lead(Utf16(u"x\r\ny"))}});
const Bytes kMeet =
    Fields({{10, Concat({Hex("01020304"), FieldList({{130, Lead(Utf16(u"Meet"))}, {2, Text("no")}})})}});
const Bytes kCall = Fields({{2, Hex("01000000")}, {3, LE32(65)}, {4, LE64(0)}, {6, Hex("01")}, {12, Text("555")},
                            {31, Text("Bo\t")}});
const Bytes kWideAutoText = Fields({{129, Lead(Utf16(u"u"))}, {130, Lead(Utf16(u"you"))}, {1, Text("x")}});
const Bytes kBookmark = Body(1, 2, Concat({Hex("0401000548656C6C6F"), Hex("001200"), Hex("03"), Text("a.b")}));
const Bytes kOneByte = {0x42};

using Values = std::vector<std::pair<std::string, std::string>>;  // member name, expected value

struct Case {
  Kind kind;
  Bytes body;
  Values expected;
  const char* label = nullptr;  // the tree label, when the row checks it
  ImageKey image = ImageKey::None;
  double timeZoneHours = 0;
};

TEST(Decoders, MembersAndTreeLabelsOfEveryKind) {
  const std::vector<Case> cases = {
      {Kind::SmsMessages, Sms(false, 0, 86400000, {{2, Text("+44\t1")}, {4, Text("Hi\r\nthere\t!")}}),
       {{"Status", "Received"}, {"Folder", "Inbox"}, {"SentDate", "1970-01-01 03:00:00"},
        {"ReceivedDate", "1970-01-02 03:00:00"}, {"Number", "+441"}, {"Message", "Hi\r\nthere!"}},
       "+441", ImageKey::receivedsms},
      {Kind::SmsMessages, Sms(true, 0xFFFFFFFFFFFFull, 0, {}), {{"Folder", "Outbox"}, {"SentDate", ""}}},
      // Only a first byte of 06 selects UTF-16; Latin UTF-16 loses its zero bytes.
      {Kind::SmsMessages, Sms(true, 0, 0, {{4, Hex("06270644")}}), {{"Message", "\xC7\xE1"}}},
      {Kind::SmsMessages, Sms(true, 0, 0, {{4, Hex("00480069")}}), {{"Message", "Hi"}}},
      {Kind::SmsMessages, SmsFlag(255), {{"Status", "Received"}}},
      {Kind::SmsMessages, Sms(true, 0, 0, {}), {{"Number", ""}}, "", ImageKey::sent},  // ends where the fields start
      {Kind::SmsMessages, kOneByte, {{"Status", "Sent"}, {"Number", ""}}},  // too short for the direction byte
      {Kind::AddressBook, kTwoNames, {{"FirstName", "Ann"}, {"LastName", "Lee"}, {"WorkPhone1", "555"}}, "Ann Lee",
       ImageKey::mobile},
      {Kind::AddressBook, Fields({{32, Text("Ann")}}), {{"LastName", ""}}, "Ann ", ImageKey::mobile},
      {Kind::AddressBook, Fields({}), {}, " ", ImageKey::mobile},
      // The last name is the field right after the first, with the same code.
      {Kind::AddressBook, Fields({{32, Text("Ann")}, {33, Text("Co")}, {32, Text("Lee")}}), {{"LastName", ""}}},
      // The label reads the UTF-16 name the 8-bit way: 06 is a control character, 27 the apostrophe.
      {Kind::AddressBook, kWideContact,
       {{"Title", "Dr"}, {"FirstName", "\xC7"}, {"LastName", "Bo"}, {"Notes", "a\r\nb"}, {"Pin", "2A3B"},
        {"Other", "x"}}, "'", ImageKey::mobile},
      {Kind::AddressBook, kNestedContact, {{"FirstName", "Outer"}}},
      {Kind::AddressBookAll, kNestedContact, {{"FirstName", "Ann"}}, "Ann Lee", ImageKey::addressbook},
      // The calendar's plain route is not cleaned.
      {Kind::Calendar, kLunch,
       {{"Subject", "Lunch\t"}, {"Location", "Cafe"}, {"Start", "1970-01-02 03:00:00"},
        {"End", "1970-01-01 04:00:00"}, {"Duration", ""}, {"AppointmentNotes", "x\r\ny"}},
       "Lunch\t", ImageKey::calendars},
      {Kind::Calendar, kMeet, {}, "", ImageKey::calendars},
      // Location pairs as 132 / 3 and the notes as 131 / 4, not plain + 128.
      {Kind::Calendar, Fields({{131, Lead(Utf16(u"w"))}, {3, Text("p")}}), {{"Location", "p"}}},
      {Kind::Calendar, Fields({{132, Lead(Utf16(u"w"))}, {4, Text("n")}}),
       {{"Location", "w"}, {"AppointmentNotes", "n"}}},
      // An absent start is 0 minutes.
      {Kind::CalendarAll, kMeet, {{"Subject", "Meet"}, {"Start", "1970-01-01 03:00:00"}}},
      {Kind::Tasks, Fields({{2, Text("Pay")}, {9, Hex("04")}, {10, Hex("01")}, {3, Text("n\r\n")}}),
       {{"TaskName", "Pay"}, {"TaskStatus", "Deferred"}, {"Priority", "Normal"}, {"TaskNotes", "n\r\n"}}, "Pay",
       ImageKey::tasks},
      {Kind::Tasks, Fields({{9, Hex("05")}, {10, Hex("03")}}), {{"TaskStatus", ""}, {"Priority", ""}}},
      {Kind::Tasks, Fields({}), {{"TaskStatus", "Not Started"}, {"Priority", "High"}}},
      {Kind::Memos, Fields({{129, Lead(Utf16(u"T"))}, {1, Text("x")}}), {{"MemoTitle", "T"}}},
      {Kind::Memos, Fields({{130, {}}, {2, Text("body")}}), {{"MemoText", "body"}}},  // an empty UTF-16 field
      {Kind::Memos, Fields({{1, Text("Title\n")}}), {{"MemoTitle", "Title"}}, "Title", ImageKey::memos},
      // The 8-bit name routes are not cleaned.
      {Kind::PhoneCallLogs, kCall,
       {{"CallName", "Bo\t"}, {"CallNumber", "555"}, {"CallDate", "1970-01-01 03:00:00"}, {"CallDuration", "1:5"},
        {"CallDirection", "Placed Call"}, {"CallStatus", "Busy"}},
       "Bo", ImageKey::placed},
      {Kind::PhoneCallLogs, Fields({{3, LE32(59)}}), {{"CallDuration", "0:59"}}},  // both parts truncate to zero
      {Kind::PhoneCallLogs, Fields({{3, LE32(3600)}}), {{"CallDuration", "60:0"}}},
      {Kind::PhoneCallLogs, Fields({{3, LE32(static_cast<std::uint32_t>(-65))}}), {{"CallDuration", "-1:-5"}}},
      {Kind::PhoneCallLogs, Fields({{6, Hex("07")}, {2, Hex("03")}}),
       {{"CallStatus", "Error: Call Failed"}, {"CallDirection", ""}}, "Unknown Number", ImageKey::missed},
      {Kind::PhoneCallLogs, Fields({{12, Text("555")}}), {{"CallName", "555"}, {"CallStatus", ""}}, "555",
       ImageKey::received},
      {Kind::PhoneCallLogs, Fields({{159, Lead(Utf16(u"\u0644"))}, {12, Text("1")}}), {}, "\xE1", ImageKey::received},
      {Kind::PhoneCallLogs, kOneByte, {{"CallName", ""}}, "Unknown Number", ImageKey::received},
      {Kind::PhoneCallLogs, Fields({{4, LE64(172800000)}}), {{"CallDate", "1970-01-03 04:00:00"}}, nullptr, {}, 1},
      // Joined with the 128-form, and never read as UTF-16.
      {Kind::AutoText, Fields({{1, Text("teh")}, {2, Text("the")}}), {{"Replace", "teh"}, {"With", "the"}}},
      {Kind::AutoText, kWideAutoText, {{"Replace", "xu"}, {"With", "you"}}, "xu", ImageKey::None},
      {Kind::BrowserBookmarks, kBookmark, {{"BookmarkName", "Hello"}, {"BookmarkUrl", "a.b"}}, "Hello"},
      // "A04" "0100" ...: the marker starts in the middle of a byte.
      {Kind::BrowserBookmarks, Body(0, 0, Hex("A0401000241420")), {}, "AB"},
      // Without a marker the length is read from digits 6-7 and the text from digit 8.
      {Kind::BrowserBookmarks, Hex("000000241420"), {{"BookmarkName", "AB"}, {"BookmarkUrl", "AB"}}},
      {Kind::BrowserBookmarks, Hex("040100FF41"), {{"BookmarkName", "A"}}},  // a length beyond the record
      {Kind::ServiceBook, Fields({{3, TextZ("WAP2 Transport")}}), {}, "WAP2 Transport", ImageKey::servicebook},
  };
  for (const Case& c : cases) {
    const MemberList members = DecodeRecord(SpecOf(c.kind), c.body, DecodeContext{c.timeZoneHours, 0, nullptr});
    for (const auto& [name, expected] : c.expected) {
      const auto m = std::find_if(members.begin(), members.end(), [&](const Member& m) { return m.name == name; });
      ASSERT_NE(m, members.end()) << name;
      EXPECT_EQ(m->value, expected) << InfoOf(c.kind).name << " " << name;
    }
    if (!c.label) continue;
    const RecordLabel label = KindLabeller().Label(c.kind, c.body);
    EXPECT_TRUE(label.text == c.label && label.image == c.image) << InfoOf(c.kind).name << " " << label.text;
  }
}

}  // namespace
}  // namespace orchidlamp
