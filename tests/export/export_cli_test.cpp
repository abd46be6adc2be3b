// The export and media commands run end to end through orchidlamp-cli.

#include <gtest/gtest.h>

#include <filesystem>

#include "generators/tiny_images.h"
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
    b.Add(FieldRecord(0, {{12, Text("555")}, {3, LE32(125)}, {2, LE32(2)}, {4, LE64(3600000)}, {77, TinyJpeg()}}));
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

TEST_F(ExportCliTest, SettingsFromTheCommandLineAndTheWrittenFileNamed) {
  const CliRun run = Run({"--delimiter", "TAB", "--timezone", "+1", "export", backup, "--csv", "--scope", "kind",
                          "--node", spans[0]});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  const std::string path = out.path() + "/OL_Export_" + run.out.substr(run.out.find("OL_Export_") + 10, 8) + ".csv";
  EXPECT_EQ(run.out, "Export to: " + path + " is complete.\n");
  const Bytes bytes = ReadFile(path);
  const std::string csv(bytes.begin(), bytes.end());
  EXPECT_EQ(csv.substr(csv.find("Status\r\n") + 8),  // the rows after the comma header
            "\"555\"\t\"555\"\t\"1970-01-01 05:00:00\"\t\"2:5\"\t\"Missed Call\"\t\"\"\r\n"
            "\"Bo\"\t\"777\"\t\"1970-01-01 04:00:00\"\t\"0:0\"\t\"Received Call\"\t\"Busy\"\r\n");
}

TEST_F(ExportCliTest, RefusalsAndUsageErrors) {
  const CliRun run = Run({"export", backup, "--txt", "--scope", "record", "--node", spans[1]});
  EXPECT_EQ(run.exitCode, 1);
  EXPECT_EQ(run.out + run.err,
            "No SMS, Address Book, Tasks, Calendar, Phone Calls, AutoText record selected for export.\r\n"
            "Please select any single record then hit the export menu.\n");
  EXPECT_TRUE(std::filesystem::is_empty(out.path()));
  for (const std::vector<std::string>& usage : {std::vector<std::string>{"export", backup, "--txt", "--scope", "kind"},
                                                {"export", backup, "--txt", "--csv", "--scope", "all"},
                                                {"export", backup, "--txt", "--scope", "some"},
                                                {"media", backup}})
    EXPECT_EQ(Run(usage).exitCode, 2);
  EXPECT_EQ(Run({"export", backup, "--txt", "--scope", "record", "--node", "9:9"}).exitCode, 1);
  EXPECT_EQ(RunCli({"--out-dir", out.File("none"), "export", backup, "--txt", "--scope", "all"}).exitCode, 1);
}

TEST_F(ExportCliTest, MediaListsSavedPathsThenTheSuccessText) {
  const CliRun run = Run({"media", backup, "--jpg"});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  const std::string path = run.out.substr(0, run.out.find('\n'));
  EXPECT_EQ(path.size(), program.path().size() + 7 + 8 + 6);  // "/media/" ddhhnnss "_0.JPG"
  EXPECT_EQ(run.out, path + "\nSuccessfully saved 1 JPG images in the media folder.\n");
  const Bytes jpeg = TinyJpeg();
  EXPECT_EQ(ReadFile(path), Bytes(jpeg.begin(), jpeg.end() - 1));
  EXPECT_EQ(Run({"media", backup, "--png"}).out, "");
}

}  // namespace
}  // namespace orchidlamp
