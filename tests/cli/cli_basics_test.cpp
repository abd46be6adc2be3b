// The command line as a script sees it: output lines, escaping, exit codes.

#include <gtest/gtest.h>

#include "support/cli_runner.h"
#include "support/ipd_builder.h"
#include "support/temp_folder.h"

namespace orchidlamp {
namespace {

using namespace orchidlamp::testing;

class CliTest : public ::testing::Test {
 protected:
  std::string Backup() {
    IpdBuilder b;
    b.Database("Handheld Agent").Database("SMS Messages").Database("Options");
    b.Add(SmsRecord(1, false, 0, 0, {{2, Text("+20\\1")}, {4, Hex("06270644")}}));
    b.Add(SmsRecord(1, true, 0, 0, {{2, Concat({Hex("C7"), Text("\n1")})}, {4, Text("a\tb\r\nc")}}));
    spans = {b.SpanOf(0), b.SpanOf(1)};
    return folder.Write("s.ipd", b.Build());
  }
  TempFolder folder;
  std::vector<std::string> spans;
};

TEST_F(CliTest, TreePrintsOneEscapedLinePerNodeDepthFirst) {
  const std::string path = Backup();
  const CliRun run = RunCli({"tree", path});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  EXPECT_EQ(run.out, "0\tTop\tsheet\t\t" + path + "\n" +
                         "1\t0DBTop\t\t\tHandheld Agent\n"
                         "1\t1DBTop\t\t\tSMS Messages\n"
                         "2\t\treceivedsms\t" + spans[0] + "\t+20\\\\1\n"
                         "2\t\tsent\t" + spans[1] + "\t\xD8\xA7" "1\n");
}

TEST_F(CliTest, StatusAndShowThroughTheCodePage) {
  const std::string path = Backup();
  CliRun run = RunCli({"status", path});
  ASSERT_EQ(run.exitCode, 0);
  EXPECT_EQ(run.out, "s.ipd\n2 SMS Messages, 0 Address Book (All), 0 Tasks, 0 Memos, 0 Calendar, 0 Phone Calls, 0 Service Book\n");

  run = RunCli({"--timezone", "+2", "show", path, spans[0]});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  EXPECT_EQ(run.out,
            "Status=Received\nFolder=Inbox\nSentDate=1970-01-01 05:00:00\nReceivedDate=1970-01-01 05:00:00\n"
            "Number=+20\\\\1\nMessage=\xD8\xA7\xD9\x84\n");
  run = RunCli({"show", path, spans[1], "--timezone", "-3"});
  EXPECT_NE(run.out.find("SentDate=1970-01-01\n"), std::string::npos);
  EXPECT_NE(run.out.find("Message=ab\\r\\nc\n"), std::string::npos);
}

TEST_F(CliTest, FailuresAndUsageErrors) {
  const std::string empty = folder.Write("empty.ipd", {});
  CliRun run = RunCli({"tree", empty});
  EXPECT_EQ(run.exitCode, 1);
  EXPECT_EQ(run.err, "Error Parsing the file, couldn't read the DB titles\n");
  EXPECT_EQ(run.out, "");

  run = RunCli({"tree", folder.File("missing.ipd")});
  EXPECT_EQ(run.exitCode, 1);
  EXPECT_NE(run.err.find("missing.ipd"), std::string::npos);

  EXPECT_EQ(RunCli({}).exitCode, 2);
  run = RunCli({"frobnicate"});
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_NE(run.err.find("frobnicate"), std::string::npos);
  run = RunCli({"tree", Backup(), "--bogus"});
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_NE(run.err.find("--bogus"), std::string::npos);
  EXPECT_EQ(RunCli({"tree"}).exitCode, 2);
  EXPECT_EQ(RunCli({"--timezone"}).exitCode, 2);
  EXPECT_EQ(RunCli({"show", Backup(), "1:2"}).exitCode, 1);
}

TEST_F(CliTest, ShowOfAServiceBookPrintsEveryBox) {
  IpdBuilder b;
  b.Database("Service Book").Database("Handheld Agent").Database("Memos");
  b.Add(FieldRecord(0, {{3, TextZ("WAP")}, {6, Hex("FFFFFFFF")}}));
  const std::string path = folder.Write("sb.ipd", b.Build());
  const CliRun run = RunCli({"show", path, b.SpanOf(0)});
  ASSERT_EQ(run.exitCode, 0);
  EXPECT_NE(run.out.find("hrtnet(0)=\n"), std::string::npos);
  EXPECT_NE(run.out.find("hrtnet(17)=WAP\n"), std::string::npos);
  EXPECT_NE(run.out.find("hrtnet(20)=-1\n"), std::string::npos);
  EXPECT_NE(run.out.find("hrtnet(21)=\n"), std::string::npos);
}

}  // namespace
}  // namespace orchidlamp
