#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "support/cli_runner.h"
#include "support/temp_folder.h"
#include "zip_fixture.h"

namespace orchidlamp {
namespace {

using namespace orchidlamp::testing;

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::size_t start = 0;
  for (std::size_t end; (end = text.find('\n', start)) != std::string::npos; start = end + 1)
    lines.push_back(text.substr(start, end - start));
  return lines;
}

// The TAG column blanked: a Windows backup regroups records by database, so
// their offsets move while everything else stays.
std::vector<std::string> WithoutTags(std::vector<std::string> lines) {
  for (std::string& line : lines) {
    std::size_t tab = 0;
    for (int i = 0; i < 3 && tab != std::string::npos; ++i) tab = line.find('\t', tab + 1);
    const std::size_t next = tab == std::string::npos ? tab : line.find('\t', tab + 1);
    if (next != std::string::npos) line.erase(tab + 1, next - tab - 1);
  }
  return lines;
}

// Runs the CLI with its own system temporary folder, so the work folders it
// makes are visible to the test and go away with it.
class ConvertCliTest : public ::testing::Test {
 protected:
  void SetUp() override {
    const char* old = std::getenv("TMPDIR");
    if (old) savedTmp = old;
    setenv("TMPDIR", temp.path().c_str(), 1);
    ipd = IpdBuilder()
              .Database("Handheld Agent")
              .Database("Memos")
              .Database("Tasks")
              .Database("SMS Messages")
              .Add(FieldRecord(1, {{1, Text("Shopping")}, {2, Text("milk\r\nbread")}}, 1, 11))
              .Add(SmsRecord(3, true, 1300000000000ULL, 1300000001000ULL, {{2, Text("+1555")}, {4, Text("hello")}}, 2))
              .Raw(Hex("FFFF02000100"))
              .Add(FieldRecord(2, {{2, Text("Call back")}}, 3, 33))
              .Add(FieldRecord(1, {{1, Text("Second")}}, 4, 44))
              .Build();
    ipdPath = files.Write("device.ipd", ipd);
  }
  void TearDown() override {
    if (savedTmp) setenv("TMPDIR", savedTmp->c_str(), 1);
    else unsetenv("TMPDIR");
  }

  TempFolder files, temp;
  std::optional<std::string> savedTmp;
  Bytes ipd;
  std::string ipdPath;
};

TEST_F(ConvertCliTest, BothDesktopKindsShowTheSameTreeAsTheIpd) {
  // Records already grouped by database and no marker: even the tags agree.
  ipdPath = files.Write("grouped.ipd", IpdBuilder()
                                           .Database("Memos")
                                           .Database("Tasks")
                                           .Add(FieldRecord(0, {{1, Text("One")}}, 1))
                                           .Add(FieldRecord(0, {{1, Text("Two")}}, 2))
                                           .Add(FieldRecord(1, {{2, Text("Three")}}, 3))
                                           .Build());
  const CliRun original = RunCli({"tree", ipdPath});
  ASSERT_EQ(original.exitCode, 0) << original.err;
  const std::vector<std::string> expected = Lines(original.out);
  ASSERT_EQ(expected.size(), 6u);

  for (const std::string kind : {"bbb-win", "bbb-mac"}) {
    const std::string bbb = files.File(kind + ".bbb");
    const CliRun saved = RunCli({"convert", ipdPath, bbb, "--to", kind});
    ASSERT_EQ(saved.exitCode, 0) << saved.err;
    EXPECT_EQ(saved.out, "File saved successfully in " + bbb + "\n");

    const CliRun tree = RunCli({"tree", bbb});
    ASSERT_EQ(tree.exitCode, 0) << tree.err;
    std::vector<std::string> lines = Lines(tree.out);
    ASSERT_EQ(lines.size(), expected.size());
    // The root is the temporary IPD the backup was turned into.
    const std::string rootPrefix = "0\tTop\tsheet\t\t" + temp.path() + "/OL_";
    EXPECT_EQ(lines[0].rfind(rootPrefix, 0), 0u) << lines[0];
    EXPECT_EQ(lines[0].substr(lines[0].size() - 4), ".ipd");
    EXPECT_EQ(std::vector<std::string>(lines.begin() + 1, lines.end()),
              std::vector<std::string>(expected.begin() + 1, expected.end()))
        << kind;
  }
}

TEST_F(ConvertCliTest, InterleavedRecordsKeepTheirTreeThroughAWindowsBackup) {
  const CliRun original = RunCli({"tree", ipdPath});
  ASSERT_EQ(original.exitCode, 0) << original.err;
  const std::string bbb = files.File("w.bbb");
  ASSERT_EQ(RunCli({"convert", ipdPath, bbb, "--to", "bbb-win"}).exitCode, 0);
  const CliRun tree = RunCli({"tree", bbb});
  ASSERT_EQ(tree.exitCode, 0) << tree.err;
  std::vector<std::string> lines = WithoutTags(Lines(tree.out)), expected = WithoutTags(Lines(original.out));
  ASSERT_EQ(lines.size(), 9u);
  ASSERT_EQ(lines.size(), expected.size());
  EXPECT_EQ(std::vector<std::string>(lines.begin() + 1, lines.end()),
            std::vector<std::string>(expected.begin() + 1, expected.end()));
  EXPECT_EQ(lines[4], "2\t\tmemos\t\tSecond");
}

TEST_F(ConvertCliTest, IpdTargetIsACopyAndABbbConvertsBack) {
  const std::string bbb = files.File("w.bbb"), back = files.File("back.ipd");
  ASSERT_EQ(RunCli({"convert", ipdPath, bbb, "--to", "bbb-mac"}).exitCode, 0);
  const CliRun run = RunCli({"convert", bbb, back, "--to", "ipd"});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  EXPECT_EQ(run.out, "File saved successfully in " + back + "\n");
  EXPECT_EQ(ReadFile(back), ipd);
  // Save As cleans up its own work folders; only the opened backup's stays.
  std::size_t folders = 0;
  for (const auto& e : std::filesystem::directory_iterator(temp.path())) folders += e.is_directory();
  EXPECT_EQ(folders, 1u);
}

TEST_F(ConvertCliTest, FailuresAreReportedWithExitStatus) {
  const CliRun usage = RunCli({"convert", ipdPath, files.File("x"), "--to", "zip"});
  EXPECT_EQ(usage.exitCode, 2);

  // The loader passes over a record of an unlisted database; the writer cannot.
  const std::string odd =
      files.Write("odd.ipd", IpdBuilder().Database("Memos").Add(FieldRecord(4, {{1, Text("x")}})).Build());
  const CliRun failed = RunCli({"convert", odd, files.File("odd.bbb"), "--to", "bbb-win"});
  EXPECT_EQ(failed.exitCode, 1);
  EXPECT_EQ(failed.err.substr(0, failed.err.find('\n') + 1), "Error in convertion!!\n");  // the reason follows
  EXPECT_TRUE(failed.out.empty());
  EXPECT_FALSE(FileExists(files.File("odd.bbb")));

  const std::string hostile = files.File("hostile.bbb");
  WriteZip(hostile, {{"Manifest.xml", ManifestFor({"1"})}, {"../1.dat", DatFile("Memos", {})}});
  const CliRun refused = RunCli({"tree", hostile});
  EXPECT_EQ(refused.exitCode, 1);
  EXPECT_NE(refused.err.find("unsafe entry name: ../1.dat"), std::string::npos) << refused.err;
  EXPECT_TRUE(std::filesystem::is_empty(temp.path()));
  EXPECT_FALSE(FileExists(files.path() + "/../1.dat"));
}

}  // namespace
}  // namespace orchidlamp
