#include "records/decoders.h"

#include <gtest/gtest.h>

#include "support/ipd_builder.h"

namespace orchidlamp {
namespace {

using namespace orchidlamp::testing;

// A record body (handle, uid, fields) as the decoders receive it.
Bytes Fields(const std::vector<testing::Field>& fields) { return Body(1, 2, FieldList(fields)); }
Bytes Lead(const Bytes& utf16) { return Concat({Hex("00"), utf16}); }
Bytes SmsBody(bool sent, std::uint64_t a, std::uint64_t b, const std::vector<testing::Field>& fields) {
  return SmsRecord(0, sent, a, b, fields).body;
}

TEST(SmsDecoder, DirectionDatesNumberAndMessage) {
  const DecodedSms sms = DecodeSms(SmsBody(false, 0, 86400000, {{2, Text("+44\t1")}, {4, Text("Hi\r\nthere\t!")}}), 0);
  EXPECT_EQ(sms.Status, "Received");
  EXPECT_EQ(sms.Folder, "Inbox");
  EXPECT_EQ(sms.SentDate, "1970-01-01 03:00:00");
  EXPECT_EQ(sms.ReceivedDate, "1970-01-02 03:00:00");
  EXPECT_EQ(sms.Number, "+441");
  EXPECT_EQ(sms.Message, "Hi\r\nthere!");
  const DecodedSms sent = DecodeSms(SmsBody(true, 0, 0, {}), 0);
  EXPECT_EQ(sent.Status, "Sent");
  EXPECT_EQ(sent.Folder, "Outbox");
  EXPECT_EQ(sent.Number, "");
}

TEST(SmsDecoder, AnyNonZeroDirectionByteIsReceived) {
  for (std::uint8_t flag : {1, 2, 255}) {
    Bytes body = SmsBody(true, 0, 0, {});
    body[9] = flag;
    EXPECT_EQ(DecodeSms(body, 0).Status, "Received");
    EXPECT_FALSE(SmsIsSent(body));
  }
}

TEST(SmsDecoder, OnlyAFirstByteOf06SelectsUtf16) {
  EXPECT_EQ(DecodeSms(SmsBody(true, 0, 0, {{4, Hex("06270644")}}), 0).Message, "\xC7\xE1");
  // Latin UTF-16 goes the 8-bit way and loses its zero bytes.
  EXPECT_EQ(DecodeSms(SmsBody(true, 0, 0, {{4, Hex("00480069")}}), 0).Message, "Hi");
}

TEST(SmsDecoder, LargestStampAndShortRecords) {
  EXPECT_EQ(DecodeSms(SmsBody(true, 0xFFFFFFFFFFFFull, 0, {}), 0).SentDate, "");
  const Bytes body = SmsBody(true, 0, 0, {{2, Text("1")}});
  EXPECT_EQ(DecodeSms(ByteView(body).first(5), 0).Status, "Sent");
  EXPECT_EQ(DecodeSms(ByteView(body).first(5), 0).Number, "");
  EXPECT_EQ(DecodeSms(ByteView(body).first(73), 0).Number, "");
  EXPECT_EQ(SmsLabel(body), "1");
}

TEST(ContactDecoder, FirstAndLastNameShareCode32) {
  const Bytes twoNames = Fields({{32, Text("Ann")}, {32, Text("Lee")}, {6, Text("555")}});
  const DecodedContact c = DecodeContact(twoNames, 0, false, {});
  EXPECT_EQ(c.FirstName, "Ann");
  EXPECT_EQ(c.LastName, "Lee");
  EXPECT_EQ(c.WorkPhone1, "555");
  EXPECT_EQ(ContactLabel(twoNames, false), "Ann Lee");
  const Bytes oneName = Fields({{32, Text("Ann")}});
  EXPECT_EQ(DecodeContact(oneName, 0, false, {}).LastName, "");
  EXPECT_EQ(ContactLabel(oneName, false), "Ann ");
  const Bytes separated = Fields({{32, Text("Ann")}, {33, Text("Co")}, {32, Text("Lee")}});
  EXPECT_EQ(DecodeContact(separated, 0, false, {}).LastName, "");
  EXPECT_EQ(ContactLabel(Fields({}), false), " ");
}

TEST(ContactDecoder, Utf16FormsWinAndTheLabelReadsThemThe8BitWay) {
  const Bytes body = Fields({{183, Lead(Utf16(u"Dr"))}, {55, Text("Mr")}, {160, Lead(Utf16(u"\u0627"))},
                             {160, Lead(Utf16(u"Bo"))}, {192, Lead(Utf16(u"a\r\nb"))}, {10, Text("2A3B")}, {18, Text("x")}});
  const DecodedContact c = DecodeContact(body, 0, false, {});
  EXPECT_EQ(c.Title, "Dr");
  EXPECT_EQ(c.FirstName, "\xC7");
  EXPECT_EQ(c.LastName, "Bo");
  EXPECT_EQ(c.Notes, "a\r\nb");
  EXPECT_EQ(c.Pin, "2A3B");
  EXPECT_EQ(c.Other, "x");
  // 06 27 read as bytes: 06 is a control character, 27 is the apostrophe.
  EXPECT_EQ(ContactLabel(body, false), "'");
}

TEST(ContactDecoder, NestedShapeReadsInsideField10) {
  const Bytes inner = FieldList({{32, Text("Ann")}, {32, Text("Lee")}});
  const Bytes body = Fields({{32, Text("Outer")}, {10, inner}});
  EXPECT_EQ(DecodeContact(body, 0, true, {}).FirstName, "Ann");
  EXPECT_EQ(DecodeContact(body, 0, false, {}).FirstName, "Outer");
  EXPECT_EQ(ContactLabel(body, true), "Ann Lee");
}

TEST(ContactDecoder, OnlyJpegPhotosAreHandedToTheWriter) {
  std::vector<std::pair<Bytes, std::int64_t>> written;
  const ContactPictureSink sink = [&](ByteView jpeg, std::int64_t n) {
    written.emplace_back(Bytes(jpeg.begin(), jpeg.end()), n);
    return std::string("PIC") + std::to_string(n) + ".jpg";
  };
  const Bytes jpeg = Hex("FFD8FFE0001001");
  EXPECT_EQ(DecodeContact(Fields({{77, jpeg}}), 1234, false, sink).PhotoFile, "PIC1234.jpg");
  ASSERT_EQ(written.size(), 1u);
  EXPECT_EQ(written[0].first, jpeg);
  EXPECT_EQ(DecodeContact(Fields({{77, Hex("FFD8E0")}}), 1, false, sink).PhotoFile, "");
  EXPECT_EQ(written.size(), 1u);
}

TEST(AppointmentDecoder, PlainAndNestedShapes) {
  const Bytes plain = Fields({{2, Text("Lunch\t")}, {3, Text("Cafe")}, {6, Hex("A0050000FF")}, {7, Hex("3C000000")},
                              {131, Lead(Utf16(u"x\r\ny"))}});
  const DecodedAppointment a = DecodeAppointment(plain, false, 0);
  EXPECT_EQ(a.Subject, "Lunch\t");  // the plain route is not cleaned
  EXPECT_EQ(a.Location, "Cafe");
  EXPECT_EQ(a.Start, "1970-01-02 03:00:00");
  EXPECT_EQ(a.End, "1970-01-01 04:00:00");
  EXPECT_EQ(a.Duration, "");
  EXPECT_EQ(a.AppointmentNotes, "x\r\ny");
  EXPECT_EQ(AppointmentLabel(plain, false), "Lunch\t");

  const Bytes nested = Fields({{10, Concat({Hex("01020304"), FieldList({{130, Lead(Utf16(u"Meet"))}, {2, Text("no")}})})}});
  EXPECT_EQ(DecodeAppointment(nested, true, 0).Subject, "Meet");
  EXPECT_EQ(DecodeAppointment(nested, true, 0).Start, "1970-01-01 03:00:00");  // absent: 0 minutes
  EXPECT_EQ(AppointmentLabel(nested, false), "");
}

TEST(TaskAndMemoDecoders, WordsTablesAndFallbacks) {
  DecodedTask t = DecodeTask(Fields({{2, Text("Pay")}, {9, Hex("04")}, {10, Hex("01")}, {3, Text("n\r\n")}}));
  EXPECT_EQ(t.TaskName, "Pay");
  EXPECT_EQ(t.TaskStatus, "Deferred");
  EXPECT_EQ(t.Priority, "Normal");
  EXPECT_EQ(t.TaskNotes, "n\r\n");
  t = DecodeTask(Fields({{9, Hex("05")}, {10, Hex("03")}}));
  EXPECT_EQ(t.TaskStatus, "");
  EXPECT_EQ(t.Priority, "");
  t = DecodeTask(Fields({}));
  EXPECT_EQ(t.TaskStatus, "Not Started");
  EXPECT_EQ(t.Priority, "High");

  EXPECT_EQ(DecodeMemo(Fields({{129, Lead(Utf16(u"T"))}, {1, Text("x")}})).MemoTitle, "T");
  const Bytes emptyWide = Fields({{130, {}}, {2, Text("body")}});
  EXPECT_EQ(DecodeMemo(emptyWide).MemoText, "body");
  EXPECT_EQ(MemoLabel(Fields({{1, Text("Title\n")}})), "Title");
}

TEST(CallDecoder, NameNumberDateDurationDirectionStatus) {
  const Bytes body = Fields({{2, Hex("01000000")}, {3, LE32(65)}, {4, LE64(0)}, {6, Hex("01")},
                             {12, Text("555")}, {31, Text("Bo\t")}});
  const DecodedCall c = DecodeCall(body, 0);
  EXPECT_EQ(c.CallName, "Bo\t");  // the 8-bit name routes are not cleaned
  EXPECT_EQ(c.CallNumber, "555");
  EXPECT_EQ(c.CallDate, "1970-01-01 03:00:00");
  EXPECT_EQ(c.CallDuration, "1:5");
  EXPECT_EQ(c.CallDirection, "Placed Call");
  EXPECT_EQ(c.CallStatus, "Busy");
  EXPECT_EQ(CallLabel(body), "Bo");
  EXPECT_EQ(CallDirectionWord(body), "placed");
}

TEST(CallDecoder, EdgeValues) {
  EXPECT_EQ(DecodeCall(Fields({{3, LE32(59)}}), 0).CallDuration, "0:59");
  EXPECT_EQ(DecodeCall(Fields({{3, LE32(3600)}}), 0).CallDuration, "60:0");
  EXPECT_EQ(DecodeCall(Fields({{3, LE32(static_cast<std::uint32_t>(-65))}}), 0).CallDuration, "-1:-5");
  EXPECT_EQ(DecodeCall(Fields({{6, Hex("07")}}), 0).CallStatus, "Error: Call Failed");
  EXPECT_EQ(DecodeCall(Fields({}), 0).CallStatus, "");
  const Bytes three = Fields({{2, Hex("03")}});
  EXPECT_EQ(DecodeCall(three, 0).CallDirection, "");
  EXPECT_EQ(CallDirectionWord(three), "missed");
  EXPECT_EQ(CallDirectionWord(Fields({})), "received");
  const Bytes numberOnly = Fields({{12, Text("555")}});
  EXPECT_EQ(DecodeCall(numberOnly, 0).CallName, "555");
  EXPECT_EQ(CallLabel(numberOnly), "555");
  EXPECT_EQ(CallLabel(Fields({})), "Unknown Number");
  EXPECT_EQ(DecodeCall(Fields({}), 0).CallName, "");
  EXPECT_EQ(CallLabel(Fields({{159, Lead(Utf16(u"\u0644"))}, {12, Text("1")}})), "\xE1");
  EXPECT_EQ(DecodeCall(Fields({{4, LE64(86400000ull * 2)}}), 1).CallDate, "1970-01-03 04:00:00");
}

TEST(AutoTextDecoder, PlainAnd128FormsAreJoinedNeverUtf16) {
  const DecodedAutoText a = DecodeAutoText(Fields({{1, Text("teh")}, {2, Text("the")}}));
  EXPECT_EQ(a.Replace, "teh");
  EXPECT_EQ(a.With, "the");
  const Bytes wide = Fields({{129, Lead(Utf16(u"u"))}, {130, Lead(Utf16(u"you"))}, {1, Text("x")}});
  EXPECT_EQ(DecodeAutoText(wide).Replace, "xu");
  EXPECT_EQ(DecodeAutoText(wide).With, "you");
  EXPECT_EQ(AutoTextLabel(wide), "xu");
}

TEST(BookmarkDecoder, MarkersAreSearchedInHexAtAnyPosition) {
  const Bytes body = Body(1, 2, Concat({Hex("0401000548656C6C6F"), Hex("001200"), Hex("03"), Text("a.b")}));
  const DecodedBookmark b = DecodeBookmark(body);
  EXPECT_EQ(b.BookmarkName, "Hello");
  EXPECT_EQ(b.BookmarkUrl, "a.b");
  EXPECT_EQ(BookmarkLabel(body), "Hello");
  // "A04" "0100" ...: the marker starts in the middle of a byte.
  const Bytes odd = Body(0, 0, Hex("A0401000241420"));
  EXPECT_EQ(BookmarkLabel(odd), "AB");
}

TEST(BookmarkDecoder, AMissingMarkerReadsFromTheStartOfTheHex) {
  // Without a marker the length is read from digits 6-7 and the text from digit 8.
  const DecodedBookmark b = DecodeBookmark(Hex("000000241420"));
  EXPECT_EQ(b.BookmarkName, "AB");
  EXPECT_EQ(b.BookmarkUrl, "AB");
  // A length beyond the record gives what is there.
  EXPECT_EQ(DecodeBookmark(Hex("040100FF41")).BookmarkName, "A");
}

}  // namespace
}  // namespace orchidlamp
