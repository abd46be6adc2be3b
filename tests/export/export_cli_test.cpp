// The export and media commands run end to end through orchidlamp-cli.

#include <gtest/gtest.h>

#include <filesystem>

#include "support/cli_runner.h"
#include "support/ipd_builder.h"
#include "support/temp_folder.h"
#include "generators/tiny_images.h"

namespace orchidlamp {
namespace {

using namespace orchidlamp::testing;

const std::string kBanner(71, '*');
const std::string kCrLf = "\r\n";

class ExportCliTest : public ::testing::Test {
 protected:
  void SetUp() override {
    IpdBuilder b;
    b.Database("Phone Call Logs").Database("Address Book").Database("Service Book");
    b.Add(FieldRecord(0, {{12, Text("555")}, {3, LE32(125)}, {2, LE32(2)}, {4, LE64(3600000)}}));
    b.Add(FieldRecord(1, {{32, Text("Ann")}, {32, Text("Lee")}, {8, Text("0700")}, {77, TinyJpeg()}}));
    b.Add(FieldRecord(2, {{3, TextZ("WAP")}}));
    b.Add(FieldRecord(0, {{31, Text("Bo")}, {12, Text("777")}, {6, LE32(1)}}));
    for (std::size_t i = 0; i < 4; ++i) spans.push_back(b.SpanOf(i));
    backup = in.Write("calls.ipd", b.Build());
  }

  // Runs the export and returns the written file's text; checks the message and
  // that the file went to --out-dir with the expected name.
  std::string Export(std::vector<std::string> args, const std::string& extension) {
    args.insert(args.begin(), {"--out-dir", out.path(), "--program-dir", program.path(), "--delimiter", "TAB"});
    const CliRun run = RunCli(args);
    EXPECT_EQ(run.exitCode, 0) << run.err;
    const std::string prefix = "Export to: " + out.path() + "/OL_Export_";
    EXPECT_EQ(run.out.rfind(prefix, 0), 0u) << run.out;
    const std::string path = run.out.substr(11, prefix.size() - 11 + 8) + extension;
    EXPECT_EQ(run.out, "Export to: " + path + " is complete.\n");
    const Bytes bytes = ReadFile(path);
    return std::string(bytes.begin(), bytes.end());
  }

  TempFolder in, out, program;
  std::string backup;
  std::vector<std::string> spans;
};

TEST_F(ExportCliTest, AllCallsAsCsvWithTabDelimitedRowsUnderACommaHeader) {
  const std::string csv = Export({"export", backup, "--csv", "--scope", "kind", "--node", spans[0]}, ".csv");
  EXPECT_EQ(csv, kBanner + kCrLf + std::string(27, ' ') + "Phone Calls" + kCrLf + kBanner + kCrLf +
                     "Name,Number,Date,Duration,Direction,Status" + kCrLf +
                     "\"555\"\t\"555\"\t\"1970-01-01 04:00:00\"\t\"2:5\"\t\"Missed Call\"\t\"\"" + kCrLf +
                     "\"Bo\"\t\"777\"\t\"1970-01-01 03:00:00\"\t\"0:0\"\t\"Received Call\"\t\"Busy\"" + kCrLf);
}

TEST_F(ExportCliTest, WholeTreeAsTextWritesTheContactPicture) {
  const std::string text = Export({"--timezone", "+1", "export", backup, "--txt", "--scope", "all"}, ".txt");
  const std::string sep = kCrLf + std::string(44, '-') + kCrLf;
  std::string contact = "        " + sep + "\tTitle: " + kCrLf + "\tFirst Name: Ann" + kCrLf + "\tLast Name: Lee";
  for (const char* label : {"Company: ", "Job: ", "Email: ", "Work Phone 1: ", "Work Phone 2: ", "Home Phone 1: ",
                            "Home Phone 2: "})
    contact += kCrLf + "\t" + label;
  contact += kCrLf + "\tMobile: 0700";
  for (const char* label : {"Pager: ", "Fax: ", "PIN: ", "Other: ", "Home Address 1: ", "Home Address 2: ",
                            "Home City: ", "Home State: ", "Home ZIP: ", "Home Country: ", "Work Address 1: ",
                            "Work Address 2: ", "Work City: ", "Work State: ", "Work ZIP: ", "Work Country: ",
                            "Birthday: ", "Anniversary: ", "Category: ", "Web Page: ", "Notes: "})
    contact += kCrLf + "\t" + label;
  const std::string expected =
      kBanner + kCrLf + std::string(26, ' ') + "Phone Call Logs" + kCrLf + kBanner + kCrLf +  //
      "        " + sep + "\tName: 555" + kCrLf + "\tNumber: 555" + kCrLf + "\tDate: 1970-01-01 05:00:00" + kCrLf +
      "\tDuration: 2:5" + kCrLf + "\tDirection: Missed Call" + kCrLf + "\tStatus: " + kCrLf +  //
      "        " + sep + "\tName: Bo" + kCrLf + "\tNumber: 777" + kCrLf + "\tDate: 1970-01-01 04:00:00" + kCrLf +
      "\tDuration: 0:0" + kCrLf + "\tDirection: Received Call" + kCrLf + "\tStatus: Busy" + kCrLf +  //
      kBanner + kCrLf + std::string(27, ' ') + "Address Book" + kCrLf + kBanner + kCrLf + contact + kCrLf;
  EXPECT_EQ(text, expected);
  const std::string picture = program.path() + "/PIC" + spans[1].substr(0, spans[1].find(':')) + ".jpg";
  EXPECT_EQ(ReadFile(picture), TinyJpeg());
}

TEST_F(ExportCliTest, RefusalsAndUsageErrors) {
  CliRun run = RunCli({"--out-dir", out.path(), "export", backup, "--txt", "--scope", "record", "--node", spans[2]});
  EXPECT_EQ(run.exitCode, 1);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err,
            "No SMS, Address Book, Tasks, Calendar, Phone Calls, AutoText record selected for export.\r\n"
            "Please select any single record then hit the export menu.\n");
  EXPECT_TRUE(std::filesystem::is_empty(out.path()));

  EXPECT_EQ(RunCli({"export", backup, "--txt", "--scope", "kind"}).exitCode, 2);
  EXPECT_EQ(RunCli({"export", backup, "--txt", "--csv", "--scope", "all"}).exitCode, 2);
  EXPECT_EQ(RunCli({"export", backup, "--txt", "--scope", "some"}).exitCode, 2);
  EXPECT_EQ(RunCli({"--out-dir", out.path(), "export", backup, "--txt", "--scope", "record", "--node", "9:9"}).exitCode, 1);
  EXPECT_EQ(RunCli({"--out-dir", out.File("none"), "export", backup, "--txt", "--scope", "all"}).exitCode, 1);
}

TEST_F(ExportCliTest, MediaListsSavedPathsThenTheSuccessText) {
  const CliRun run = RunCli({"--program-dir", program.path(), "media", backup, "--jpg"});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  const std::string media = program.path() + "/media/";
  ASSERT_EQ(run.out.rfind(media, 0), 0u) << run.out;
  const std::string path = run.out.substr(0, run.out.find('\n'));
  EXPECT_EQ(path.size(), media.size() + 8 + 6);  // ddhhnnss + "_0.JPG"
  EXPECT_EQ(run.out, path + "\nSuccessfully saved 1 JPG images in the media folder.\n");
  const Bytes jpeg = TinyJpeg();
  EXPECT_EQ(ReadFile(path), Bytes(jpeg.begin(), jpeg.end() - 1));

  const CliRun none = RunCli({"--program-dir", program.path(), "media", backup, "--png"});
  EXPECT_EQ(none.exitCode, 0);
  EXPECT_EQ(none.out, "");
  EXPECT_EQ(RunCli({"media", backup}).exitCode, 2);
}

}  // namespace
}  // namespace orchidlamp
