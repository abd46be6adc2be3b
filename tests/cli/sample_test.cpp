// The bundled sample, end to end through the real command line: every kind shows
// its label and decoded values, and the committed file is exactly what the
// generator makes, so the sample never drifts from its sources.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "support/cli_runner.h"
#include "generators/large_backup.h"
#include "generators/sample_backup.h"
#include "support/temp_folder.h"

namespace orchidlamp::testing {
namespace {

using ::testing::HasSubstr;

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

// The tree lines without the root, whose text is the path as given.
std::vector<std::string> TreeBelowRoot(const std::string& path) {
  const CliRun run = RunCli({"tree", path});
  EXPECT_EQ(run.exitCode, 0) << run.err;
  std::vector<std::string> lines = Lines(run.out);
  if (!lines.empty()) lines.erase(lines.begin());
  return lines;
}

// The tag of the record node whose label is `label`.
std::string TagOf(const std::string& label) {
  for (const std::string& line : TreeBelowRoot(SamplePath())) {
    std::vector<std::string> columns;
    std::istringstream in(line);
    for (std::string c; std::getline(in, c, '\t');) columns.push_back(c);
    if (columns.size() == 5 && columns[0] == "2" && columns[4] == label) return columns[3];
  }
  ADD_FAILURE() << "no record labelled " << label;
  return {};
}

std::vector<std::string> Show(const std::string& label) {
  TempFolder program;  // contact pictures land here, not beside the binary
  const CliRun run = RunCli({"--program-dir", program.path(), "show", SamplePath(), TagOf(label)});
  EXPECT_EQ(run.exitCode, 0) << run.err;
  std::vector<std::string> lines = Lines(run.out);
  std::erase_if(lines, [](const std::string& l) { return !l.empty() && l.back() == '='; });
  return lines;
}

TEST(SampleBackup, TreeShowsEveryKindWithItsLabelAndImage) {
  const std::vector<std::string> expected = {
      "1\t0DBTop\t\t\tAddress Book",
      "2\t\tmobile\t235:509\tAnn Lee",
      "2\t\tmobile\t517:883\tOmar",
      "1\t1DBTop\t\t\tAddress Book - All",
      "2\t\taddressbook\t891:1135\tMaria Garcia",
      "2\t\taddressbook\t1143:1273\tLina",
      "2\t\taddressbook\t1281:1368\tPizza Roma ",
      "1\t2DBTop\t\t\tAutoText",
      "2\t\t\t1376:1397\tteh",
      "2\t\t\t1405:1443\tmypin",
      "2\t\t\t1451:1480\tadn",
      "1\t3DBTop\t\t\tBrowser Bookmarks",
      "2\t\t\t1488:1633\tBlackBerry",
      "2\t\t\t1641:1704\tWeather",
      "1\t4DBTop\t\t\tCalendar",
      "2\t\tcalendars\t1712:1795\tDentist",
      "1\t5DBTop\t\t\tCalendar - All",
      "2\t\tcalendars\t1803:1912\tProject review",
      "2\t\tcalendars\t1920:1999\tاجتماع العائلة",
      "1\t6DBTop\t\t\tHandheld Agent",
      "1\t7DBTop\t\t\tMemos",
      "2\t\tmemos\t2049:2102\tShopping list",
      "2\t\tmemos\t2110:2183\tملاحظات",
      "1\t9DBTop\t\t\tPhone Call Logs",
      "2\t\treceived\t2226:2288\tAnn Lee",
      "2\t\tplaced\t2296:2369\tعمر حداد",
      "2\t\tmissed\t2377:2429\t+16135550000",
      "2\t\tplaced\t2437:2502\tReception",
      "1\t10DBTop\t\t\tSMS Messages",
      "2\t\treceivedsms\t2510:2641\t+14165550134",
      "2\t\tsent\t2655:2775\t+14165550134",
      "2\t\treceivedsms\t2783:2906\t+971505550142",
      "2\t\tsent\t2914:3035\t+971505550142",
      "1\t11DBTop\t\t\tService Book",
      "2\t\tservicebook\t3043:3340\tBrowser Config",
      "2\t\tservicebook\t3348:3577\tDesktop [CMIME]",
      "1\t12DBTop\t\t\tTasks",
      "2\t\ttasks\t3585:3667\tRenew passport",
      "2\t\ttasks\t3675:3718\tCall the bank",
      "2\t\ttasks\t3726:3779\tتجديد رخصة القيادة",
  };
  // The unknown database has a node but no records; "Options" has neither.
  EXPECT_EQ(TreeBelowRoot(SamplePath()), expected);
}

TEST(SampleBackup, StatusCountsEveryCountedKind) {
  const CliRun run = RunCli({"status", SamplePath()});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  EXPECT_EQ(run.out,
            "sample.ipd\n"
            "4 SMS Messages, 3 Address Book (All), 3 Tasks, 2 Memos, 2 Calendar, 4 Phone Calls, 2 Service Book\n");
}

TEST(SampleBackup, SmsInBothDirectionsAndScripts) {
  EXPECT_EQ(Show("+14165550134"),
            (std::vector<std::string>{"Status=Received", "Folder=Inbox", "SentDate=2011-03-14 11:05:12",
                                      "ReceivedDate=2011-03-14 11:05:40", "Number=+14165550134",
                                      "Message=Running 10 min late, see you at the cafe."}));
  const CliRun sent = RunCli({"show", SamplePath(), "2655:2775"});
  EXPECT_THAT(sent.out, HasSubstr("Status=Sent\nFolder=Outbox\n"));
  EXPECT_THAT(sent.out, HasSubstr("Message=Flight lands 18:40.\\r\\nGate B12.\n"));
  EXPECT_THAT(Show("+971505550142"), ::testing::Contains("Message=مرحبا، كيف حالك؟"));
}

TEST(SampleBackup, ContactsInBothShapesWithPlainAndWideNames) {
  EXPECT_THAT(Show("Ann Lee"), ::testing::IsSupersetOf({"FirstName=Ann", "LastName=Lee", "Company=Northwind Traders",
                                                        "Notes=Met at the spring trade fair.\\r\\nPrefers email."}));
  const std::vector<std::string> omar = Show("Omar");
  EXPECT_THAT(omar, ::testing::IsSupersetOf({"FirstName=Omar", "LastName=Haddad", "Company=شركة النور"}));
  EXPECT_THAT(omar, ::testing::Contains(::testing::StartsWith("PhotoFile=")));
  EXPECT_THAT(Show("Maria Garcia"), ::testing::IsSupersetOf({"FirstName=Maria", "LastName=Garcia", "HomeCity=Madrid"}));
  EXPECT_THAT(Show("Lina"), ::testing::IsSupersetOf({"FirstName=Lina", "LastName=Khoury", "Job=مهندسة"}));
}

TEST(SampleBackup, CalendarTasksMemosCallsAutoTextBookmarks) {
  EXPECT_THAT(Show("Dentist"), ::testing::IsSupersetOf({"Start=2011-03-21 12:30:00", "End=2011-03-21 13:15:00"}));
  EXPECT_THAT(Show("Project review"),
              ::testing::IsSupersetOf({"Location=Room 4B", "Start=2011-03-22 17:00:00",
                                       "AppointmentNotes=Agenda:\\r\\n1. Budget\\r\\n2. Timeline"}));
  EXPECT_EQ(Show("Renew passport"),
            (std::vector<std::string>{"TaskName=Renew passport", "TaskStatus=In Progress", "Priority=High",
                                      "TaskNotes=Photos from the studio on Main Street.\\r\\nForm B-7."}));
  EXPECT_THAT(Show("تجديد رخصة القيادة"), ::testing::IsSupersetOf({"TaskStatus=Deferred", "Priority=Normal"}));
  EXPECT_EQ(Show("ملاحظات"), (std::vector<std::string>{"MemoTitle=ملاحظات", "MemoText=موعد الطبيب يوم الاثنين"}));
  EXPECT_THAT(Show("Reception"), ::testing::IsSupersetOf({"CallDirection=Placed Call", "CallStatus=Busy"}));
  EXPECT_THAT(Show("+16135550000"), ::testing::IsSupersetOf({"CallName=+16135550000", "CallDirection=Missed Call"}));
  EXPECT_THAT(Show("عمر حداد"), ::testing::IsSupersetOf({"CallDuration=0:42", "CallDate=2011-03-14 20:22:03"}));
  EXPECT_EQ(Show("adn"), (std::vector<std::string>{"Replace=adn", "With=and"}));
  EXPECT_EQ(Show("BlackBerry"), (std::vector<std::string>{"BookmarkName=BlackBerry",
                                                          "BookmarkUrl=http://mobile.blackberry.com/"}));
}

TEST(SampleBackup, ServiceBookFillsEveryBox) {
  const std::vector<std::string> boxes = Show("Browser Config");
  ASSERT_EQ(boxes.size(), 22u);
  EXPECT_EQ(boxes[1], "hrtnet(1)=302720");
  EXPECT_EQ(boxes[4], "hrtnet(4)=4.6.1.0.1");
  EXPECT_EQ(boxes[9], "hrtnet(9)=3128");
  EXPECT_EQ(boxes[15], "hrtnet(15)=http://mobile.blackberry.com");
  EXPECT_EQ(boxes[20], "hrtnet(20)=-1");
}

TEST(SampleBackup, CommittedFileIsWhatTheGeneratorMakes) {
  TempFolder folder;
  const std::string fresh = folder.Write("sample.ipd", SampleBackup());
  const Bytes committed = ReadFile(SamplePath());
  ASSERT_FALSE(committed.empty());
  EXPECT_TRUE(ReadFile(fresh) == committed) << "regenerate samples/sample.ipd with make_sample";
}

TEST(LargeBackup, SameSeedSameBytesAndTheCountsLoad) {
  std::ostringstream first, second, other;
  WriteLargeBackup(first, 3000, 7);
  WriteLargeBackup(second, 3000, 7);
  WriteLargeBackup(other, 3000, 8);
  EXPECT_EQ(first.str(), second.str());
  EXPECT_NE(first.str(), other.str());

  TempFolder folder;
  const std::string text = first.str();
  const std::string path = folder.Write("large.ipd", Bytes(text.begin(), text.end()));
  const CliRun run = RunCli({"status", path});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  const auto plan = LargeBackupPlan(3000);
  // Plan order: 1 "Address Book - All", 5 "Calendar - All", 7 Memos, 9 calls, 10 SMS, 11 service books, 12 tasks.
  const std::string details = std::to_string(plan[10]) + " SMS Messages, " + std::to_string(plan[1]) +
                              " Address Book (All), " + std::to_string(plan[12]) + " Tasks, " +
                              std::to_string(plan[7]) + " Memos, " + std::to_string(plan[5]) + " Calendar, " +
                              std::to_string(plan[9]) + " Phone Calls, " + std::to_string(plan[11]) + " Service Book";
  EXPECT_EQ(run.out, "large.ipd\n" + details + "\n");
}

}  // namespace
}  // namespace orchidlamp::testing
