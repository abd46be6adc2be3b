#include <gtest/gtest.h>
#include <libical/ical.h>
#include <libxml/parser.h>

#include <filesystem>
#include <map>

#include "export/migrate_text_format.h"
#include "export/migration.h"
#include "generators/record_shapes.h"
#include "records/record_kinds.h"
#include "support/cli_runner.h"
#include "support/ipd_builder.h"
#include "support/temp_folder.h"

namespace orchidlamp {
namespace {

using namespace orchidlamp::testing;

Bytes Jpeg() {
  Bytes b = Hex("FFD8FFE0");
  for (int i = 0; i < 200; ++i) b.push_back(static_cast<std::uint8_t>(i * 7));
  return b;
}

// Every kind once, Greek and Arabic text, the characters each format escapes,
// a contact in both address books, and one damaged AutoText record.
Bytes FixtureBackup() {
  IpdBuilder b;
  for (const char* name : {"Address Book", "Address Book - All", "Calendar", "Tasks", "SMS Messages",
                           "Phone Call Logs", "Memos", "Browser Bookmarks", "AutoText"})
    b.Database(name);
  const std::vector<Field> ann = {
      {32, Text("Ann")}, {32, Text("Lee, Jr.")}, {55, Text("Dr.")}, {33, Text("A;B\\C")}, {42, Text("Chief")},
      {1, Text("ann@x.org")}, {1, Text("a2@x.org")}, {6, Text("+1 416 555 0134")}, {7, Text("22")}, {8, Text("33")},
      {3, Text("44")}, {9, Text("55")}, {18, Text("66")}, {35, Text("1 Main St")}, {36, Text("Floor 2")},
      {38, Text("Toronto")}, {39, Text("ON")}, {40, Text("M5H")}, {41, Text("Canada")}, {54, Text("http://a.org")},
      {82, Text("12/04/1979")}, {83, Text("06/09/2005")}, {59, Text("Business, VIP")},
      {64, Text("line1\r\nline2")}, {77, Jpeg()}};
  b.Add(FieldRecord(0, ann, 1, 0x11));
  b.Add(NestedRecord(1, {}, {}, {{160, WideText(u"Γιάννης")}, {160, WideText(u"Παπαδόπουλος")}}, 2, 0x22));
  b.Add(NestedRecord(1, {}, {}, {{32, Text("Ann")}}, 3, 0x11));  // the twin of the first
  b.Add(FieldRecord(2, {{2, Text("Review, part 1; draft\\x")}, {3, Text("Room <4>")}, {4, Text("Agenda:\n1. Budget")},
                        {6, LE32(21678330)}, {7, LE32(21678405)}}, 1, 0x33));
  b.Add(FieldRecord(3, {{130, WideText(u"Ανανέωση")}, {9, Hex("01")}, {10, Hex("02")}, {5, LE32(21678330)}}, 1, 0x44));
  b.Add(SmsRecord(4, false, 1300089912000, 1300089913000,
                  {{2, Concat({Hex("00000000"), TextZ("+1 416 555 0134")})}, {4, Text("a&b<c>\"d\"")}, {7, Hex("00")}}));
  b.Add(SmsRecord(4, true, 0xFFFFFFFFFFFF, 0, {{2, TextZ("+30691")}, {4, Utf16(u"Καλημέρα")}, {7, Hex("02")}}));
  b.Add(FieldRecord(5, {{2, LE32(2)}, {3, LE32(75)}, {4, LE64(1300171710000)}, {12, Text("+1-416-555-0134")}}));
  b.Add(FieldRecord(6, {{1, Text("a/b:c")}, {2, Text("text")}}));
  b.Add(FieldRecord(7, BookmarkFields("News & \"more\"", "http://x.org/?a=1&b=2", {})));
  b.Add(FieldRecord(8, {{1, Text("teh")}, {2, Text("the, \"a\"")}}));
  b.Add(Record{8, Body(9, 9, Hex("0500010102"))});  // a field longer than its record
  return b.Build();
}

class MigrationTest : public ::testing::Test {
 protected:
  Result<MigrationReport> Run(Bytes backup, MigrationOptions options = {}) {
    EXPECT_TRUE(ws.Load(in.Write("b.ipd", backup), StoredSettings{"+3", ","}));
    options.outDir = out.File("phone");
    return Migrate(ws, options);
  }
  std::string Output(const std::string& name) { const Bytes b = ReadFile(out.File("phone/" + name)); return {b.begin(), b.end()}; }

  KindLabeller labeller;
  Workspace ws{labeller, [] { return std::time_t{1700000000}; }};
  TempFolder in, out;
};

TEST_F(MigrationTest, WritesEveryKindOnceInTheTableOrder) {
  auto report = Run(FixtureBackup());
  ASSERT_TRUE(report);
  std::vector<std::pair<std::string, std::size_t>> files;
  for (const MigratedFile& f : report->files) files.emplace_back(f.name, f.count);
  EXPECT_EQ(files, (decltype(files){{"contacts.vcf", 2}, {"calendar.ics", 2}, {"messages.xml", 2}, {"calls.xml", 1},
                                    {"memos/", 1}, {"bookmarks.html", 1}, {"autotext.csv", 1}}));
  ASSERT_EQ(report->skipped.size(), 1u);
  EXPECT_EQ(std::string(report->skipped[0].kind) + std::to_string(report->skipped[0].count), "autotext1");
  EXPECT_EQ(Output("memos/0001 a_b_c.txt"), "text");
  EXPECT_EQ(Output("autotext.csv"), "Replace,With\r\nteh,\"the, \"\"a\"\"\"\r\n");
  EXPECT_NE(Output("bookmarks.html").find("<DT><A HREF=\"http://x.org/?a=1&amp;b=2\">News &amp; &quot;more&quot;</A>"),
            std::string::npos);
  EXPECT_FALSE(FileExists(out.File("phone/.contacts.vcf.partial")));
}

TEST_F(MigrationTest, VCardHoldsEveryMappedProperty) {
  ASSERT_TRUE(Run(FixtureBackup()));
  std::string unfolded = Output("contacts.vcf");
  for (std::size_t at; (at = unfolded.find("\r\n ")) != std::string::npos;) unfolded.erase(at, 3);
  std::multimap<std::string, std::string> props;
  for (std::size_t from = 0, end; (end = unfolded.find("\r\n", from)) != std::string::npos; from = end + 2) {
    const std::string line = unfolded.substr(from, end - from);
    props.emplace(line.substr(0, line.find(':')), line.substr(line.find(':') + 1));
  }
  EXPECT_EQ(props, (std::multimap<std::string, std::string>{
      {"BEGIN", "VCARD"}, {"VERSION", "3.0"}, {"N", "Lee\\, Jr.;Ann;;;Dr."}, {"FN", "Ann Lee\\, Jr."},
      {"ORG", "A\\;B\\\\C"}, {"TITLE", "Chief"}, {"EMAIL;TYPE=INTERNET", "ann@x.org"}, {"EMAIL;TYPE=INTERNET", "a2@x.org"},
      {"TEL;TYPE=WORK", "+1 416 555 0134"}, {"TEL;TYPE=HOME", "22"}, {"TEL;TYPE=CELL", "33"}, {"TEL;TYPE=FAX", "44"},
      {"TEL;TYPE=PAGER", "55"}, {"TEL", "66"}, {"ADR;TYPE=WORK", ";;1 Main St\\nFloor 2;Toronto;ON;M5H;Canada"},
      {"URL", "http://a.org"}, {"BDAY", "12/04/1979"}, {"X-ANNIVERSARY", "06/09/2005"}, {"NOTE", "line1\\nline2"},
      {"CATEGORIES", "Business,VIP"}, {"PHOTO;ENCODING=b;TYPE=JPEG", Base64(Jpeg())}, {"UID", "17"}, {"END", "VCARD"},
      {"BEGIN", "VCARD"}, {"VERSION", "3.0"}, {"N", "Παπαδόπουλος;Γιάννης;;;"}, {"FN", "Γιάννης Παπαδόπουλος"},
      {"UID", "34"}, {"END", "VCARD"}}));
}

TEST_F(MigrationTest, ICalendarParsesBackWithTrueInstants) {
  ASSERT_TRUE(Run(FixtureBackup()));
  icalcomponent* cal = icalparser_parse_string(Output("calendar.ics").c_str());
  ASSERT_NE(cal, nullptr);
  icalcomponent* event = icalcomponent_get_first_component(cal, ICAL_VEVENT_COMPONENT);
  ASSERT_NE(event, nullptr);
  EXPECT_STREQ(icalcomponent_get_uid(event), "51");
  EXPECT_STREQ(icalcomponent_get_summary(event), "Review, part 1; draft\\x");
  EXPECT_STREQ(icalcomponent_get_location(event), "Room <4>");
  EXPECT_STREQ(icalcomponent_get_description(event), "Agenda:\n1. Budget");
  EXPECT_STREQ(icaltime_as_ical_string(icalcomponent_get_dtstart(event)), "20110321T093000Z");
  EXPECT_STREQ(icaltime_as_ical_string(icalcomponent_get_dtend(event)), "20110321T104500Z");
  EXPECT_STREQ(icaltime_as_ical_string(icalcomponent_get_dtstamp(event)), "20231114T221320Z");
  icalcomponent* todo = icalcomponent_get_first_component(cal, ICAL_VTODO_COMPONENT);
  ASSERT_NE(todo, nullptr);
  EXPECT_STREQ(icalcomponent_get_summary(todo), "Ανανέωση");
  EXPECT_EQ(icalcomponent_get_status(todo), ICAL_STATUS_INPROCESS);
  EXPECT_EQ(icalproperty_get_priority(icalcomponent_get_first_property(todo, ICAL_PRIORITY_PROPERTY)), 9);
  EXPECT_STREQ(icaltime_as_ical_string(icalcomponent_get_due(todo)), "20110321T093000Z");
  icalcomponent_free(cal);
}

// The XML files' elements as attribute maps.
std::vector<std::map<std::string, std::string>> XmlRows(const std::string& text, const char* root) {
  std::vector<std::map<std::string, std::string>> rows;
  xmlDocPtr doc = xmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr, nullptr, XML_PARSE_NONET);
  if (!doc) return ADD_FAILURE() << "not XML", rows;
  xmlNodePtr top = xmlDocGetRootElement(doc);
  EXPECT_STREQ(reinterpret_cast<const char*>(top->name), root);
  for (xmlNodePtr n = top->children; n; n = n->next) {
    if (n->type != XML_ELEMENT_NODE) continue;
    auto& row = rows.emplace_back();
    for (xmlAttrPtr a = n->properties; a; a = a->next) {
      xmlChar* v = xmlNodeGetContent(a->children);
      row[reinterpret_cast<const char*>(a->name)] = reinterpret_cast<const char*>(v);
      xmlFree(v);
    }
  }
  xmlFreeDoc(doc);
  return rows;
}

TEST_F(MigrationTest, MessagesAndCallsParseBack) {
  ASSERT_TRUE(Run(FixtureBackup()));
  const auto sms = XmlRows(Output("messages.xml"), "smses");
  ASSERT_EQ(sms.size(), 2u);
  EXPECT_EQ(sms[0], (std::map<std::string, std::string>{
      {"protocol", "0"}, {"address", "+1 416 555 0134"}, {"date", "1300089912000"}, {"type", "1"}, {"subject", "null"},
      {"body", "a&b<c>\"d\""}, {"toa", "null"}, {"sc_toa", "null"}, {"service_center", "null"}, {"read", "1"},
      {"status", "-1"}, {"locked", "0"}, {"date_sent", "1300089912000"}, {"readable_date", "2011-03-14 08:05:12"},
      {"contact_name", "Ann Lee, Jr."}}));
  // UCS-2, sent, a stamp beyond year 9999, a number no contact has.
  EXPECT_EQ(sms[1].at("body") + sms[1].at("type") + sms[1].at("date") + sms[1].at("contact_name"), "Καλημέρα20(Unknown)");
  EXPECT_EQ(sms[1].count("readable_date"), 0u);
  const auto calls = XmlRows(Output("calls.xml"), "calls");
  ASSERT_EQ(calls.size(), 1u);
  EXPECT_EQ(calls[0], (std::map<std::string, std::string>{
      {"number", "+1-416-555-0134"}, {"duration", "75"}, {"date", "1300171710000"}, {"type", "3"}, {"presentation", "1"},
      {"readable_date", "2011-03-15 06:48:30"}, {"contact_name", "Ann Lee, Jr."}}));
}

TEST_F(MigrationTest, OnlyTheChosenKindsWithRecordsAreWrittenOverOldFiles) {
  std::filesystem::create_directories(out.File("phone/memos"));
  out.Write("phone/contacts.vcf", Bytes(100000, 'x'));
  out.Write("phone/memos/old.txt", Text("old"));
  const MigrationOptions options{"", "windows-1256", {MigrateKind::Contacts, MigrateKind::Memos, MigrateKind::Calls}};
  IpdBuilder b;
  b.Database("Address Book").Database("Memos").Database("Phone Call Logs");
  b.Add(FieldRecord(1, {{1, Text("T")}}));
  auto report = Run(b.Build(), options);
  ASSERT_TRUE(report);
  ASSERT_EQ(report->files.size(), 1u);
  EXPECT_EQ(report->files[0].name, "memos/");
  EXPECT_TRUE(FileExists(out.File("phone/memos/0001 T.txt")));
  EXPECT_FALSE(FileExists(out.File("phone/memos/old.txt")));
  EXPECT_EQ(Output("contacts.vcf").size(), 100000u);  // no contacts: the old file stays
  EXPECT_FALSE(FileExists(out.File("phone/calls.xml")));
}

TEST_F(MigrationTest, ACancelledRunWritesNothing) {
  EXPECT_TRUE(ws.Load(in.Write("b.ipd", FixtureBackup()), StoredSettings{}));
  int polls = 0;
  auto report = Migrate(ws, {out.File("phone"), "windows-1256", {}}, nullptr, [&] { return ++polls > 3; });
  EXPECT_TRUE(report && report->cancelled && report->files.empty());
  EXPECT_FALSE(FileExists(out.File("phone")));
}

TEST(MigrationCli, SampleRunAndRefusals) {
  TempFolder out;
  const CliRun run = RunCli({"migrate", SamplePath(), out.File("phone")});
  EXPECT_EQ(run.exitCode, 0) << run.err;
  EXPECT_EQ(run.out, "contacts.vcf\t5\ncalendar.ics\t6\nmessages.xml\t4\ncalls.xml\t4\nmemos/\t2\n"
                     "bookmarks.html\t2\nautotext.csv\t3\n");
  EXPECT_EQ(RunCli({"migrate", SamplePath(), out.File("x"), "--charset", "no-such"}).exitCode, 2);
  EXPECT_EQ(RunCli({"migrate", SamplePath(), out.File("x"), "--only", "contacts,sms"}).exitCode, 2);
  EXPECT_EQ(RunCli({"migrate", out.File("none.ipd"), out.File("x")}).exitCode, 1);
  EXPECT_FALSE(FileExists(out.File("x")));
}

}  // namespace
}  // namespace orchidlamp
