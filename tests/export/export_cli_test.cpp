// The export and media commands run end to end through orchidlamp-cli: the
// settings and folders given on the command line, the messages, the exit codes.

#include <gtest/gtest.h>

#include <filesystem>

#include "support/cli_runner.h"
#include "support/ipd_builder.h"
#include "support/temp_folder.h"

namespace orchidlamp {
namespace {

using namespace orchidlamp::testing;

class ExportCliTest : public ::testing::Test {
 protected:
  void SetUp() override {
    IpdBuilder b;
    b.Database("Phone Call Logs").Database("Service Book");
    b.Add(FieldRecord(0, {{12, Text("555")}, {3, LE32(125)}, {2, LE32(2)}, {4, LE64(3600000)}}));
    b.Add(FieldRecord(1, {{3, TextZ("WAP")}}));
    b.Add(FieldRecord(0, {{31, Text("Bo")}, {12, Text("777")}, {6, LE32(1)}}));
    for (std::size_t i = 0; i < 3; ++i) spans.push_back(b.SpanOf(i));
    backup = in.Write("calls.ipd", b.Build());
  }
  CliRun Run(std::vector<std::string> args) const {
    args.insert(args.begin(), {"--out-dir", out.path(), "--program-dir", program.path()});
    return RunCli(args);
  }

  TempFolder in, out, program;
  std::string backup;
  std::vector<std::string> spans;
};

TEST_F(ExportCliTest, SettingsFoldersMessagesAndExitStatus) {
  const CliRun run = Run({"--delimiter", "TAB", "--timezone", "+1", "export", backup, "--csv", "--scope", "kind",
                          "--node", spans[0]});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  const std::string path = out.path() + "/OL_Export_" + run.out.substr(run.out.find("OL_Export_") + 10, 8) + ".csv";
  EXPECT_EQ(run.out, "Export to: " + path + " is complete.\n");
  const Bytes csv = ReadFile(path);
  EXPECT_TRUE(std::string(csv.begin(), csv.end())
                  .ends_with("Status\r\n"  // the comma header, then the rows
                             "\"555\"\t\"555\"\t\"1970-01-01 05:00:00\"\t\"2:5\"\t\"Missed Call\"\t\"\"\r\n"
                             "\"Bo\"\t\"777\"\t\"1970-01-01 04:00:00\"\t\"0:0\"\t\"Received Call\"\t\"Busy\"\r\n"));
  std::filesystem::remove(path);
  // A refusal writes nothing; a malformed command line is exit status 2.
  const CliRun refused = Run({"export", backup, "--txt", "--scope", "record", "--node", spans[1]});
  EXPECT_TRUE(refused.exitCode == 1 && refused.out.empty() && refused.err.rfind("No SMS, Address Book,", 0) == 0);
  EXPECT_TRUE(std::filesystem::is_empty(out.path()));
  for (const std::vector<std::string>& usage : {std::vector<std::string>{"export", backup, "--txt", "--scope", "kind"},
                                                {"export", backup, "--txt", "--csv", "--scope", "all"},
                                                {"export", backup, "--txt", "--scope", "some"},
                                                {"media", backup}})
    EXPECT_EQ(Run(usage).exitCode, 2);
  EXPECT_EQ(Run({"export", backup, "--txt", "--scope", "record", "--node", "9:9"}).exitCode, 1);
  // No pictures: nothing saved, nothing said.
  const CliRun media = Run({"media", backup, "--png"});
  EXPECT_TRUE(media.exitCode == 0 && media.out.empty() && media.err.empty());
}

}  // namespace
}  // namespace orchidlamp
