#include "export/record_formatters.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "support/ipd_builder.h"

namespace orchidlamp {
namespace {

using namespace orchidlamp::testing;
using Pairs = std::vector<std::pair<std::string, std::string>>;

const std::string kSeparator(44, '-');

// The report block as a reader of the file sees it, from known values.
std::string Block(const Pairs& members) {
  std::string out = "\r\n" + kSeparator + "\r\n";
  for (std::size_t i = 0; i < members.size(); ++i) {
    if (i) out += "\r\n";
    out += "\t" + members[i].first + members[i].second;
  }
  return out;
}

Bytes Fields(const std::vector<testing::Field>& fields) { return Body(1, 2, FieldList(fields)); }
Bytes Lead(const Bytes& utf16) { return Concat({Hex("00"), utf16}); }

class FormatterTest : public ::testing::Test {
 protected:
  std::string Text(RecordFormatter format, const Bytes& body) const { return format(body, span, context, true); }
  std::string Csv(RecordFormatter format, const Bytes& body) const { return format(body, span, context, false); }

  RecordSpan span{500, 600};
  FormatContext context{0, ";", {}};
};

TEST_F(FormatterTest, MemoBlockAndRow) {
  const Bytes memo = Fields({{1, testing::Text("Shop")}, {2, testing::Text("milk\r\neggs")}});
  EXPECT_EQ(Text(FormatMemo, memo), "\r\n" + kSeparator + "\r\n\tTitle: Shop\r\n\tMemo: milk\r\neggs");
  // A line break inside a value makes the row span lines; nothing is escaped.
  EXPECT_EQ(Csv(FormatMemo, memo), "\"Shop\";\"milk\r\neggs\"");
}

TEST_F(FormatterTest, TaskRowWithSemicolons) {
  const Bytes task = Fields({{2, testing::Text("Pay")}, {9, Hex("01")}, {10, Hex("02")}, {3, testing::Text("a\"b;c")}});
  EXPECT_EQ(Csv(FormatTask, task), "\"Pay\";\"In Progress\";\"Low\";\"a\"b;c\"");
  EXPECT_EQ(Text(FormatTask, task),
            Block({{"Task: ", "Pay"}, {"Status: ", "In Progress"}, {"Priority: ", "Low"}, {"Notes: ", "a\"b;c"}}));
}

TEST_F(FormatterTest, SmsLeavesOutTheFolder) {
  const Bytes sms = SmsRecord(0, false, 0, 86400000, {{2, testing::Text("+441")}, {4, testing::Text("Hi")}}).body;
  EXPECT_EQ(Text(FormatSms, sms), Block({{"Status: ", "Received"},
                                         {"Sent Date: ", "1970-01-01 03:00:00"},
                                         {"Received Date: ", "1970-01-02 03:00:00"},
                                         {"Number: ", "+441"},
                                         {"Message: ", "Hi"}}));
  context.timeZoneHours = 2;
  EXPECT_EQ(Csv(FormatSms, sms), "\"Received\";\"1970-01-01 05:00:00\";\"1970-01-02 05:00:00\";\"+441\";\"Hi\"");
}

TEST_F(FormatterTest, ContactPrintsPinBeforeOtherAndNeverThePhotoOrField99) {
  const Bytes contact = Fields({{32, testing::Text("Ann")}, {32, testing::Text("Lee")}, {18, testing::Text("other")},
                                {10, testing::Text("2A3B")}, {99, testing::Text("x99")}, {64, testing::Text("n")},
                                {1, testing::Text("a@b")}, {82, testing::Text("1 May")}});
  const Pairs expected = {
      {"Title: ", ""},          {"First Name: ", "Ann"},   {"Last Name: ", "Lee"},    {"Company: ", ""},
      {"Job: ", ""},            {"Email: ", "a@b"},        {"Work Phone 1: ", ""},    {"Work Phone 2: ", ""},
      {"Home Phone 1: ", ""},   {"Home Phone 2: ", ""},    {"Mobile: ", ""},          {"Pager: ", ""},
      {"Fax: ", ""},            {"PIN: ", "2A3B"},         {"Other: ", "other"},      {"Home Address 1: ", ""},
      {"Home Address 2: ", ""}, {"Home City: ", ""},       {"Home State: ", ""},      {"Home ZIP: ", ""},
      {"Home Country: ", ""},   {"Work Address 1: ", ""},  {"Work Address 2: ", ""},  {"Work City: ", ""},
      {"Work State: ", ""},     {"Work ZIP: ", ""},        {"Work Country: ", ""},    {"Birthday: ", "1 May"},
      {"Anniversary: ", ""},    {"Category: ", ""},        {"Web Page: ", ""},        {"Notes: ", "n"}};
  EXPECT_EQ(Text(FormatContact, contact), Block(expected));
  std::string row;
  for (std::size_t i = 0; i < expected.size(); ++i) row += (i ? ";\"" : "\"") + expected[i].second + "\"";
  EXPECT_EQ(Csv(FormatContact, contact), row);
}

TEST_F(FormatterTest, ContactShapesAndPhotoNumber) {
  const Bytes nested = Fields({{10, FieldList({{32, testing::Text("In")}, {77, Hex("FFD8FFE0")}})}});
  std::vector<std::int64_t> numbers;
  context.pictures = [&](ByteView, std::int64_t n) {
    numbers.push_back(n);
    return std::string("p");
  };
  EXPECT_EQ(Csv(FormatContactNested, nested).substr(0, 9), "\"\";\"In\";\"");
  EXPECT_EQ(numbers, std::vector<std::int64_t>{500});
  // Read flat, the same record has no names at all.
  EXPECT_EQ(Csv(FormatContact, nested), "1");
}

TEST_F(FormatterTest, CalendarDurationIsAlwaysEmpty) {
  const Bytes plain = Fields({{2, testing::Text("Lunch")}, {3, testing::Text("Cafe")}, {6, Hex("A0050000")},
                              {7, Hex("3C000000")}, {4, testing::Text("bring\r\nit")}});
  EXPECT_EQ(Text(FormatAppointment, plain), Block({{"Subject: ", "Lunch"},
                                                   {"Location: ", "Cafe"},
                                                   {"Start: ", "1970-01-02 03:00:00"},
                                                   {"End: ", "1970-01-01 04:00:00"},
                                                   {"Duration: ", ""},
                                                   {"Notes: ", "bring\r\nit"}}));
  const Bytes nested = Fields({{10, Concat({Hex("01020304"), FieldList({{2, testing::Text("Meet")}})})}});
  EXPECT_EQ(Csv(FormatAppointmentNested, nested), "\"Meet\";\"\";\"1970-01-01 03:00:00\";\"1970-01-01 03:00:00\";\"\";\"\"");
  EXPECT_EQ(Csv(FormatAppointment, nested), "1");
}

TEST_F(FormatterTest, CallAutoTextAndBookmark) {
  const Bytes call = Fields({{2, Hex("01000000")}, {3, LE32(65)}, {4, LE64(0)}, {6, Hex("01")}, {12, testing::Text("555")},
                             {31, testing::Text("Bo")}});
  EXPECT_EQ(Text(FormatCall, call), Block({{"Name: ", "Bo"},
                                           {"Number: ", "555"},
                                           {"Date: ", "1970-01-01 03:00:00"},
                                           {"Duration: ", "1:5"},
                                           {"Direction: ", "Placed Call"},
                                           {"Status: ", "Busy"}}));
  const Bytes autotext = Fields({{1, testing::Text("teh")}, {2, testing::Text("the")}});
  EXPECT_EQ(Text(FormatAutoText, autotext), Block({{"Replace: ", "teh"}, {"With: ", "the"}}));
  EXPECT_EQ(Csv(FormatAutoText, autotext), "\"teh\";\"the\"");
  const Bytes bookmark = Body(1, 2, Concat({Hex("0401000548656C6C6F"), Hex("001200"), Hex("03"), testing::Text("a.b")}));
  EXPECT_EQ(Text(FormatBookmark, bookmark), Block({{"Name: ", "Hello"}, {"Url: ", "a.b"}}));
  EXPECT_EQ(Csv(FormatBookmark, bookmark), "\"Hello\";\"a.b\"");
}

TEST_F(FormatterTest, KeyMemberMissingGivesTheSkipMarkerInBothForms) {
  const std::vector<std::pair<RecordFormatter, Bytes>> skipped = {
      {FormatMemo, Fields({{2, testing::Text("text without title")}})},
      {FormatSms, SmsRecord(0, true, 0, 0, {{4, testing::Text("no number")}}).body},
      {FormatContact, Fields({{33, testing::Text("Company only")}})},
      {FormatTask, Fields({{3, testing::Text("notes")}})},
      {FormatAppointment, Fields({{3, testing::Text("where")}})},
      {FormatCall, Fields({{3, LE32(5)}})},
      {FormatAutoText, Fields({{2, testing::Text("with only")}})},
      {FormatBookmark, Body(1, 2, Hex("0401000341424300120000"))},
  };
  for (const auto& [format, body] : skipped) {
    EXPECT_EQ(Text(format, body), "1");
    EXPECT_EQ(Csv(format, body), "1");
  }
  // One name is enough for a contact; a number alone is enough for a call.
  EXPECT_NE(Csv(FormatContact, Fields({{160, Lead(Utf16(u"Ann"))}})), "1");
  EXPECT_NE(Csv(FormatCall, Fields({{12, testing::Text("5")}})), "1");
}

}  // namespace
}  // namespace orchidlamp
