// split, merge and sb-edit as a script runs them.

#include <filesystem>

#include "support/cli_runner.h"
#include "editing_fixture.h"

namespace orchidlamp {
namespace {

using namespace orchidlamp::testing;

class EditingCliTest : public EditingTest {
 protected:
  std::string Backup(const std::string& name) {
    IpdBuilder b;
    b.Database("Handheld Agent").Database("Service Book").Database("Tasks").Database("Memos");
    b.Add(FieldRecord(1, {{0x03, TextZ("Book")}, {0x07, TextZ("U")}, {0x08, TextZ("C")}, {0x06, LE32(5)}}, 3));
    b.Add(TaskRecord(2, name + "-t1", 1)).Add(MemoRecord(3, name + "-m")).Add(TaskRecord(2, name + "-t2", 2));
    spans = {b.SpanOf(0), b.SpanOf(1), b.SpanOf(2), b.SpanOf(3)};
    return folder.Write(name + ".ipd", b.Build());
  }
  // The tree command's view of a written file: "depth text" per node below the root.
  std::vector<std::string> TreeOf(const std::string& path) {
    const CliRun run = RunCli({"tree", path});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    std::vector<std::string> lines;
    std::size_t start = run.out.find('\n') + 1;
    for (std::size_t end; (end = run.out.find('\n', start)) != std::string::npos; start = end + 1) {
      const std::string line = run.out.substr(start, end - start);
      lines.push_back(line.substr(0, 1) + " " + line.substr(line.rfind('\t') + 1));
    }
    return lines;
  }
  std::vector<std::string> spans;
};

TEST_F(EditingCliTest, SplitWritesTheToggledNodes) {
  const std::string in = Backup("a"), out = folder.File("split.ipd");
  CliRun run = RunCli({"split", in, out, "--toggle", "3DBTop", "--toggle", spans[3], "--toggle", "1DBTop"});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  EXPECT_EQ(run.out, "File saved as " + out + "\n");
  EXPECT_EQ(TreeOf(out), (std::vector<std::string>{"1 Service Book", "2 Book", "1 Tasks", "2 a-t2", "1 Memos",
                                                   "2 a-m"}));

  run = RunCli({"split", in, out, "--toggle", "9DBTop"});
  EXPECT_EQ(run.exitCode, 1);
  EXPECT_NE(run.err.find("9DBTop"), std::string::npos);
  EXPECT_EQ(RunCli({"split", in}).exitCode, 2);
  EXPECT_EQ(RunCli({"split", in, out, "--toggle"}).exitCode, 2);
}

TEST_F(EditingCliTest, MergeJoinsBothFilesInTheFixedOrder) {
  const std::string first = Backup("a"), second = Backup("b"), out = folder.File("merged.ipd");
  const CliRun run = RunCli({"merge", first, second, out, "--toggle1", "3DBTop", "--toggle1", "2DBTop", "--toggle2",
                             spans[1], "--toggle2", "1DBTop"});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  EXPECT_EQ(run.out, "File saved as " + out + "\n");
  std::vector<std::string> tree = TreeOf(out);
  ASSERT_EQ(tree.size(), 8u);
  // Database 0 of a file without bookmarks reads as bookmarks: the memo's label is not its title.
  tree.erase(tree.begin() + 1);
  EXPECT_EQ(tree, (std::vector<std::string>{"1 Memos", "1 Tasks", "2 a-t1", "2 a-t2", "2 b-t1", "1 Service Book",
                                            "2 Book"}));

  const std::string broken = folder.Write("broken.ipd", Bytes(41, 0));
  const CliRun failed = RunCli({"merge", first, broken, out});
  EXPECT_EQ(failed.exitCode, 1);
  EXPECT_EQ(failed.err, "Error Parsing the file, couldn't read the DB titles\n");
  EXPECT_EQ(RunCli({"merge", first, second, out, "--toggle2", "nowhere"}).exitCode, 1);
  EXPECT_EQ(RunCli({"merge", first, second}).exitCode, 2);
}

TEST_F(EditingCliTest, SbEditSavesTheEditedRecordBesideTheBackupOrInOutDir) {
  const std::string in = Backup("a");
  CliRun run = RunCli({"sb-edit", in, spans[0], "--set", "17=Edited", "--set", "20=-1", "--save"});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  ASSERT_EQ(run.out.rfind("File saved as " + folder.path() + "/OL_Export_", 0), 0u) << run.out;
  const std::string saved = run.out.substr(14, run.out.size() - 15);
  EXPECT_EQ(saved.size(), folder.path().size() + 1 + 10 + 8 + 4);
  EXPECT_EQ(TreeOf(saved), (std::vector<std::string>{"1 Service Book", "2 Edited"}));
  const CliRun shown = RunCli({"show", saved, "64:" + std::to_string(ReadFile(saved).size() - 1)});
  EXPECT_NE(shown.out.find("hrtnet(20)=-1\n"), std::string::npos) << shown.out;

  const std::string outDir = folder.File("out");
  std::filesystem::create_directory(outDir);
  run = RunCli({"--out-dir", outDir, "sb-edit", in, spans[0], "--save-all"});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  ASSERT_EQ(run.out.rfind("File saved as " + outDir + "/OL_Export_", 0), 0u) << run.out;
}

TEST_F(EditingCliTest, SbEditRefusalsAndFailures) {
  const std::string in = Backup("a");
  const std::string outDir = folder.File("out");
  std::filesystem::create_directory(outDir);
  auto sbEdit = [&](std::vector<std::string> args) {
    args.insert(args.begin(), {"--out-dir", outDir, "sb-edit", in});
    return RunCli(args);
  };
  // A blank name: the message on standard error, and the file is still written.
  CliRun run = sbEdit({spans[0], "--set", "18=", "--save"});
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_EQ(run.err, "Service-book name, UID, CID, UserID cannot be blank\n");
  EXPECT_EQ(run.out.rfind("File saved as ", 0), 0u);
  std::filesystem::remove_all(outDir);
  std::filesystem::create_directory(outDir);

  run = sbEdit({spans[0], "--set", "20=abc", "--save"});
  EXPECT_EQ(run.exitCode, 1);
  EXPECT_NE(run.err.find("hrtnet(20)"), std::string::npos);
  // A task is no service book: the editor does not open.
  run = sbEdit({spans[1], "--save"});
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(sbEdit({"1:2", "--save"}).exitCode, 1);
  EXPECT_TRUE(std::filesystem::is_empty(outDir));

  EXPECT_EQ(sbEdit({spans[0]}).exitCode, 2);
  EXPECT_EQ(sbEdit({spans[0], "--save", "--save-all"}).exitCode, 2);
  EXPECT_EQ(sbEdit({spans[0], "--set", "22=x", "--save"}).exitCode, 2);
  EXPECT_EQ(sbEdit({spans[0], "--set", "x", "--save"}).exitCode, 2);
}

}  // namespace
}  // namespace orchidlamp
