// Every kind's members and tree label, one row per record shape and member.

#include <gtest/gtest.h>

#include "records/record_kinds.h"
#include "support/ipd_builder.h"

namespace orchidlamp {
namespace {

using namespace orchidlamp::testing;

// A record body (handle, uid, fields) as the decoders receive it.
Bytes Fields(const std::vector<testing::Field>& fields) { return Body(1, 2, FieldList(fields)); }
Bytes Lead(const Bytes& utf16) { return Concat({Hex("00"), utf16}); }
Bytes Sms(bool sent, std::uint64_t a, std::uint64_t b, const std::vector<testing::Field>& fields) {
  return SmsRecord(0, sent, a, b, fields).body;
}
Bytes SmsFlag(std::uint8_t flag) {
  Bytes body = Sms(true, 0, 0, {});
  body[9] = flag;
  return body;
}
Bytes Cut(const Bytes& body, std::size_t size) { return Bytes(body.begin(), body.begin() + size); }
Bytes Nested(const Bytes& skipped, const std::vector<testing::Field>& inner) {
  return Fields({{10, Concat({skipped, FieldList(inner)})}});
}

const Bytes kTwoNames = Fields({{32, Text("Ann")}, {32, Text("Lee")}, {6, Text("555")}});
const Bytes kWideContact = Fields({{183, Lead(Utf16(u"Dr"))}, {55, Text("Mr")}, {160, Lead(Utf16(u"\u0627"))},
                                   {160, Lead(Utf16(u"Bo"))}, {192, Lead(Utf16(u"a\r\nb"))}, {10, Text("2A3B")},
                                   {18, Text("x")}});
const Bytes kNestedContact = Fields({{32, Text("Outer")}, {10, FieldList({{32, Text("Ann")}, {32, Text("Lee")}})}});
const Bytes kLunch = Fields({{2, Text("Lunch\t")}, {3, Text("Cafe")}, {6, Hex("A0050000FF")}, {7, Hex("3C000000")},
                             {131, Lead(Utf16(u"x\r\ny"))}});
const Bytes kMeet = Nested(Hex("01020304"), {{130, Lead(Utf16(u"Meet"))}, {2, Text("no")}});
const Bytes kCall = Fields({{2, Hex("01000000")}, {3, LE32(65)}, {4, LE64(0)}, {6, Hex("01")}, {12, Text("555")},
                            {31, Text("Bo\t")}});
const Bytes kWideAutoText = Fields({{129, Lead(Utf16(u"u"))}, {130, Lead(Utf16(u"you"))}, {1, Text("x")}});
const Bytes kBookmark = Body(1, 2, Concat({Hex("0401000548656C6C6F"), Hex("001200"), Hex("03"), Text("a.b")}));
const Bytes kOneByte = {0x42};

struct MemberCase {
  Kind kind;
  Bytes body;
  std::string member;
  std::string expected;
  double timeZoneHours = 0;
};

std::string ValueOf(const MemberCase& c) {
  for (const Member& m : DecodeRecord(SpecOf(c.kind), c.body, DecodeContext{c.timeZoneHours, 0, nullptr}))
    if (m.name == c.member) return m.value;
  return "<no member " + c.member + ">";
}

TEST(Decoders, MembersOfEveryKind) {
  const std::vector<MemberCase> cases = {
      {Kind::SmsMessages, Sms(false, 0, 86400000, {{2, Text("+44\t1")}}), "Status", "Received"},
      {Kind::SmsMessages, Sms(false, 0, 0, {}), "Folder", "Inbox"},
      {Kind::SmsMessages, Sms(true, 0, 0, {}), "Folder", "Outbox"},
      {Kind::SmsMessages, Sms(false, 0, 86400000, {}), "SentDate", "1970-01-01 03:00:00"},
      {Kind::SmsMessages, Sms(false, 0, 86400000, {}), "ReceivedDate", "1970-01-02 03:00:00"},
      {Kind::SmsMessages, Sms(true, 0xFFFFFFFFFFFFull, 0, {}), "SentDate", ""},  // beyond the year 9999
      {Kind::SmsMessages, Sms(false, 0, 0, {{2, Text("+44\t1")}}), "Number", "+441"},
      {Kind::SmsMessages, Sms(false, 0, 0, {{4, Text("Hi\r\nthere\t!")}}), "Message", "Hi\r\nthere!"},
      // Only a first byte of 06 selects UTF-16; Latin UTF-16 loses its zero bytes.
      {Kind::SmsMessages, Sms(true, 0, 0, {{4, Hex("06270644")}}), "Message", "\xC7\xE1"},
      {Kind::SmsMessages, Sms(true, 0, 0, {{4, Hex("00480069")}}), "Message", "Hi"},
      {Kind::SmsMessages, SmsFlag(1), "Status", "Received"},
      {Kind::SmsMessages, SmsFlag(255), "Status", "Received"},
      {Kind::SmsMessages, Cut(Sms(true, 0, 0, {{2, Text("1")}}), 5), "Status", "Sent"},
      {Kind::SmsMessages, Cut(Sms(true, 0, 0, {{2, Text("1")}}), 73), "Number", ""},
      {Kind::SmsMessages, kOneByte, "Status", "Sent"},
      {Kind::AddressBook, kTwoNames, "FirstName", "Ann"},
      {Kind::AddressBook, kTwoNames, "LastName", "Lee"},
      {Kind::AddressBook, kTwoNames, "WorkPhone1", "555"},
      {Kind::AddressBook, Fields({{32, Text("Ann")}}), "LastName", ""},
      // The last name is the field right after the first, with the same code.
      {Kind::AddressBook, Fields({{32, Text("Ann")}, {33, Text("Co")}, {32, Text("Lee")}}), "LastName", ""},
      {Kind::AddressBook, kWideContact, "Title", "Dr"},
      {Kind::AddressBook, kWideContact, "FirstName", "\xC7"},
      {Kind::AddressBook, kWideContact, "LastName", "Bo"},
      {Kind::AddressBook, kWideContact, "Notes", "a\r\nb"},
      {Kind::AddressBook, kWideContact, "Pin", "2A3B"},
      {Kind::AddressBook, kWideContact, "Other", "x"},
      {Kind::AddressBook, kNestedContact, "FirstName", "Outer"},
      {Kind::AddressBookAll, kNestedContact, "FirstName", "Ann"},
      {Kind::Calendar, kLunch, "Subject", "Lunch\t"},  // the calendar's plain route is not cleaned
      {Kind::Calendar, kLunch, "Location", "Cafe"},
      {Kind::Calendar, kLunch, "Start", "1970-01-02 03:00:00"},
      {Kind::Calendar, kLunch, "End", "1970-01-01 04:00:00"},
      {Kind::Calendar, kLunch, "Duration", ""},
      {Kind::Calendar, kLunch, "AppointmentNotes", "x\r\ny"},
      // Location pairs as 132 / 3 and the notes as 131 / 4, not plain + 128.
      {Kind::Calendar, Fields({{131, Lead(Utf16(u"w"))}, {3, Text("p")}}), "Location", "p"},
      {Kind::Calendar, Fields({{132, Lead(Utf16(u"w"))}, {4, Text("n")}}), "Location", "w"},
      {Kind::Calendar, Fields({{132, Lead(Utf16(u"w"))}, {4, Text("n")}}), "AppointmentNotes", "n"},
      {Kind::CalendarAll, kMeet, "Subject", "Meet"},
      {Kind::CalendarAll, kMeet, "Start", "1970-01-01 03:00:00"},  // absent: 0 minutes
      {Kind::Tasks, Fields({{2, Text("Pay")}, {9, Hex("04")}, {10, Hex("01")}}), "TaskStatus", "Deferred"},
      {Kind::Tasks, Fields({{9, Hex("04")}, {10, Hex("01")}}), "Priority", "Normal"},
      {Kind::Tasks, Fields({{9, Hex("05")}}), "TaskStatus", ""},
      {Kind::Tasks, Fields({{10, Hex("03")}}), "Priority", ""},
      {Kind::Tasks, Fields({}), "TaskStatus", "Not Started"},
      {Kind::Tasks, kOneByte, "Priority", "High"},
      {Kind::Tasks, Fields({{3, Text("n\r\n")}}), "TaskNotes", "n\r\n"},
      {Kind::Memos, Fields({{129, Lead(Utf16(u"T"))}, {1, Text("x")}}), "MemoTitle", "T"},
      {Kind::Memos, Fields({{130, {}}, {2, Text("body")}}), "MemoText", "body"},  // an empty UTF-16 field
      {Kind::Memos, kOneByte, "MemoTitle", ""},
      {Kind::PhoneCallLogs, kCall, "CallName", "Bo\t"},  // the 8-bit name routes are not cleaned
      {Kind::PhoneCallLogs, kCall, "CallNumber", "555"},
      {Kind::PhoneCallLogs, kCall, "CallDate", "1970-01-01 03:00:00"},
      {Kind::PhoneCallLogs, kCall, "CallDuration", "1:5"},
      {Kind::PhoneCallLogs, kCall, "CallDirection", "Placed Call"},
      {Kind::PhoneCallLogs, kCall, "CallStatus", "Busy"},
      {Kind::PhoneCallLogs, Fields({{3, LE32(59)}}), "CallDuration", "0:59"},
      {Kind::PhoneCallLogs, Fields({{3, LE32(3600)}}), "CallDuration", "60:0"},
      {Kind::PhoneCallLogs, Fields({{3, LE32(static_cast<std::uint32_t>(-65))}}), "CallDuration", "-1:-5"},
      {Kind::PhoneCallLogs, Fields({{6, Hex("07")}}), "CallStatus", "Error: Call Failed"},
      {Kind::PhoneCallLogs, Fields({}), "CallStatus", ""},
      {Kind::PhoneCallLogs, Fields({{2, Hex("03")}}), "CallDirection", ""},
      {Kind::PhoneCallLogs, Fields({{12, Text("555")}}), "CallName", "555"},
      {Kind::PhoneCallLogs, kOneByte, "CallName", ""},
      {Kind::PhoneCallLogs, Fields({{4, LE64(86400000ull * 2)}}), "CallDate", "1970-01-03 04:00:00", 1},
      {Kind::AutoText, Fields({{1, Text("teh")}, {2, Text("the")}}), "With", "the"},
      {Kind::AutoText, kWideAutoText, "Replace", "xu"},  // joined, and never read as UTF-16
      {Kind::AutoText, kWideAutoText, "With", "you"},
      {Kind::BrowserBookmarks, kBookmark, "BookmarkName", "Hello"},
      {Kind::BrowserBookmarks, kBookmark, "BookmarkUrl", "a.b"},
      // Without a marker the length is read from digits 6-7 and the text from digit 8.
      {Kind::BrowserBookmarks, Hex("000000241420"), "BookmarkName", "AB"},
      {Kind::BrowserBookmarks, Hex("000000241420"), "BookmarkUrl", "AB"},
      {Kind::BrowserBookmarks, Hex("040100FF41"), "BookmarkName", "A"},  // a length beyond the record
  };
  for (const MemberCase& c : cases)
    EXPECT_EQ(ValueOf(c), c.expected) << InfoOf(c.kind).name << " " << c.member;
}

struct LabelCase {
  Kind kind;
  Bytes body;
  std::string text;
  ImageKey image;
};

TEST(Decoders, TreeLabelsAndImages) {
  const std::vector<LabelCase> cases = {
      {Kind::SmsMessages, Sms(true, 0, 0, {{2, Text("1\n")}}), "1", ImageKey::sent},
      {Kind::SmsMessages, SmsFlag(2), "", ImageKey::receivedsms},
      {Kind::AddressBook, kTwoNames, "Ann Lee", ImageKey::mobile},
      {Kind::AddressBook, Fields({{32, Text("Ann")}}), "Ann ", ImageKey::mobile},
      {Kind::AddressBook, Fields({}), " ", ImageKey::mobile},
      // The UTF-16 name read the 8-bit way: 06 is a control character, 27 the apostrophe.
      {Kind::AddressBook, kWideContact, "'", ImageKey::mobile},
      {Kind::AddressBookAll, kNestedContact, "Ann Lee", ImageKey::addressbook},
      {Kind::Calendar, kLunch, "Lunch\t", ImageKey::calendars},
      {Kind::Calendar, kMeet, "", ImageKey::calendars},
      {Kind::Memos, Fields({{1, Text("Title\n")}}), "Title", ImageKey::memos},
      {Kind::Tasks, Fields({{2, Text("Pay\r\n")}}), "Pay", ImageKey::tasks},
      {Kind::PhoneCallLogs, kCall, "Bo", ImageKey::placed},
      {Kind::PhoneCallLogs, Fields({{2, Hex("03")}}), "Unknown Number", ImageKey::missed},
      {Kind::PhoneCallLogs, Fields({{12, Text("555")}}), "555", ImageKey::received},
      {Kind::PhoneCallLogs, Fields({{159, Lead(Utf16(u"\u0644"))}, {12, Text("1")}}), "\xE1", ImageKey::received},
      {Kind::PhoneCallLogs, kOneByte, "Unknown Number", ImageKey::received},
      {Kind::AutoText, kWideAutoText, "xu", ImageKey::None},
      {Kind::BrowserBookmarks, kBookmark, "Hello", ImageKey::None},
      // "A04" "0100" ...: the marker starts in the middle of a byte.
      {Kind::BrowserBookmarks, Body(0, 0, Hex("A0401000241420")), "AB", ImageKey::None},
      {Kind::ServiceBook, Fields({{3, TextZ("WAP2 Transport")}}), "WAP2 Transport", ImageKey::servicebook},
  };
  for (const LabelCase& c : cases) {
    const RecordLabel label = KindLabeller().Label(c.kind, c.body);
    EXPECT_EQ(label.text, c.text) << InfoOf(c.kind).name;
    EXPECT_EQ(label.image, c.image) << InfoOf(c.kind).name << " " << c.text;
  }
}

TEST(Decoders, OnlyJpegPhotosAreHandedToTheWriterWithTheRecordsNumber) {
  std::vector<std::pair<Bytes, std::int64_t>> written;
  const ContactPictureSink sink = [&](ByteView jpeg, std::int64_t n) {
    written.emplace_back(Bytes(jpeg.begin(), jpeg.end()), n);
    return "PIC" + std::to_string(n) + ".jpg";
  };
  const Bytes jpeg = Hex("FFD8FFE0001001");
  for (const Bytes& photo : {jpeg, Hex("FFD8E0")}) {
    const MemberList m = DecodeRecord(SpecOf(Kind::AddressBook), Fields({{77, photo}}), {0, 1234, &sink});
    EXPECT_EQ(m.back().name, "PhotoFile");
    EXPECT_EQ(m.back().value, photo == jpeg ? "PIC1234.jpg" : "");
  }
  ASSERT_EQ(written.size(), 1u);
  EXPECT_EQ(written[0].first, jpeg);
}

}  // namespace
}  // namespace orchidlamp
