// --keep-going on a damaged backup: the loader's message, then the command on
// what was read, exit 3; without the option nothing is written and exit 1.

#include <gtest/gtest.h>

#include "support/cli_runner.h"
#include "support/ipd_builder.h"
#include "support/temp_folder.h"

namespace orchidlamp {
namespace {

using namespace orchidlamp::testing;

constexpr const char* kWalkError = "Error Parsing the file, couldn't read the file records\n";

std::string CutBackup(const TempFolder& folder) {
  IpdBuilder b;
  b.Database("Handheld Agent").Database("Memos");
  b.Add(FieldRecord(1, {{1, Text("kept")}, {2, Text("read before the cut")}}));
  b.Add(FieldRecord(1, {{1, Text("lost")}}));
  Bytes bytes = b.Build();
  bytes.resize(bytes.size() - 2);
  return folder.Write("cut.ipd", bytes);
}

TEST(KeepGoing, RunsTheCommandOnWhatWasReadAndSaysSoInItsStatus) {
  TempFolder folder;
  const std::string cut = CutBackup(folder);
  const std::string out = folder.File("split.ipd");

  const CliRun refused = RunCli({"split", cut, out});
  EXPECT_EQ(refused.exitCode, 1);
  EXPECT_EQ(refused.err, kWalkError);
  EXPECT_FALSE(FileExists(out));

  const CliRun split = RunCli({"--keep-going", "split", cut, out, "--toggle", "Top"});
  EXPECT_EQ(split.exitCode, 3);
  EXPECT_EQ(split.err, kWalkError);
  EXPECT_EQ(split.out, "File saved as " + out + "\n");
  const CliRun tree = RunCli({"tree", out});
  EXPECT_EQ(tree.exitCode, 0);
  EXPECT_NE(tree.out.find("\tMemos\n2\t"), std::string::npos);  // the database and its one record

  EXPECT_EQ(RunCli({"--keep-going", "status", SamplePath()}).exitCode, 0);
  // Nothing read at all (the name table is cut): nothing to go on with.
  const CliRun empty = RunCli({"--keep-going", "status", folder.Write("empty.ipd", {})});
  EXPECT_EQ(empty.exitCode, 1);
}

}  // namespace
}  // namespace orchidlamp
