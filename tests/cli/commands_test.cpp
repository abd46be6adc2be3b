// Every command of orchidlamp-cli once on the bundled sample, compared with
// tests/data/cli/<case>.txt: what it printed, then what it wrote (an export as
// its bytes, a backup as its tree, pictures as names and sizes). Paths of the
// run's folders read $SAMPLE, $OUT and $PROGRAM there, and the time stamps in
// generated names ddhhnnss; ORCHIDLAMP_UPDATE_EXPECTED=1 rewrites the files.
// Then the exit statuses, the escaping, and what a user reads before a first run.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>

#include "generators/sample_backup.h"
#include "orchidlamp/version.h"
#include "support/cli_runner.h"
#include "support/ipd_builder.h"
#include "support/temp_folder.h"

namespace orchidlamp::testing {
namespace {

namespace fs = std::filesystem;

// The source tree: the folder the bundled sample lies in is samples/ there.
std::string SourceFile(const std::string& relative) {
  const std::string sample = SamplePath();
  return sample.substr(0, sample.rfind("/samples/")) + "/" + relative;
}

std::string ReadText(const std::string& path) {
  const Bytes bytes = ReadFile(path);
  return {bytes.begin(), bytes.end()};
}

std::string Replace(std::string text, const std::string& from, const std::string& to) {
  for (auto at = text.find(from); !from.empty() && at != std::string::npos; at = text.find(from, at + to.size()))
    text.replace(at, from.size(), to);
  return text;
}

struct Case {
  std::string name;
  std::vector<std::string> args;
  // What to read back: "" nothing, "export" the file OL_Export_* in $OUT,
  // "tree:PATH" the tree of a written backup (below its root), "files:FOLDER".
  std::string written;
  friend void PrintTo(const Case& c, std::ostream* os) { *os << c.name; }
};

class SampleCommands : public ::testing::TestWithParam<Case> {
 protected:
  std::string Normal(std::string text) const {
    text = Replace(Replace(Replace(text, out.path(), "$OUT"), program.path(), "$PROGRAM"), SamplePath(), "$SAMPLE");
    text = std::regex_replace(text, std::regex("media/[0-9]{8}_"), "media/ddhhnnss_");
    return std::regex_replace(text, std::regex("OL_Export_[0-9]{8}"), "OL_Export_ddhhnnss");
  }
  std::string Expand(const std::string& word) const {
    return Replace(Replace(Replace(word, "$OUT", out.path()), "$PROGRAM", program.path()), "$SAMPLE", SamplePath());
  }
  std::string Written(const std::string& what) const {
    std::string path = Expand(what.substr(what.find(':') + 1));
    if (what == "export" || what == "tree:export")
      for (const auto& entry : fs::directory_iterator(out.path()))
        if (entry.path().filename().string().starts_with("OL_Export_")) path = entry.path().string();
    if (what == "export") return ReadText(path);
    if (what.starts_with("tree:")) {
      const CliRun tree = RunCli({"tree", path});
      return tree.out.substr(tree.out.find('\n') + 1);
    }
    std::vector<std::string> files;
    for (const auto& entry : fs::recursive_directory_iterator(path))
      if (entry.is_regular_file())
        files.push_back(Normal(entry.path().string()) + " " + std::to_string(entry.file_size()) + "\n");
    std::sort(files.begin(), files.end());
    std::string text;
    for (const std::string& f : files) text += f;
    return text;
  }
  TempFolder out, program;
};

TEST_P(SampleCommands, PrintAndWriteWhatTheyDid) {
  const Case& c = GetParam();
  fs::create_directory(program.File("media"));
  std::vector<std::string> args;
  for (const std::string& a : c.args) args.push_back(Expand(a));
  const CliRun run = RunCli(args);
  EXPECT_EQ(run.exitCode, 0) << run.err;
  EXPECT_EQ(run.err, "");
  std::string actual = Normal(run.out);
  if (!c.written.empty()) actual += "--- written\n" + Written(c.written);
  const std::string file = SourceFile("tests/data/cli/" + c.name + ".txt");
  if (std::getenv("ORCHIDLAMP_UPDATE_EXPECTED")) std::ofstream(file, std::ios::binary) << actual;
  EXPECT_EQ(actual, ReadText(file)) << file;
}

INSTANTIATE_TEST_SUITE_P(
    Cli, SampleCommands,
    ::testing::Values(
        Case{"tree", {"tree", "$SAMPLE"}, ""}, Case{"status", {"status", "$SAMPLE"}, ""},
        Case{"show-sms", {"--timezone", "+3", "show", "$SAMPLE", "2510:2641"}, ""},
        Case{"show-service-book", {"show", "$SAMPLE", "3043:3340"}, ""},
        Case{"show-contact-photo", {"--program-dir", "$PROGRAM", "show", "$SAMPLE", "517:883"}, "files:$PROGRAM"},
        Case{"export-txt-all", {"--out-dir", "$OUT", "export", "$SAMPLE", "--txt", "--scope", "all"}, "export"},
        Case{"export-csv-kind",
             {"--delimiter", "TAB", "--out-dir", "$OUT", "export", "$SAMPLE", "--csv", "--scope", "kind", "--node",
              "3585:3667"},
             "export"},
        Case{"media-jpg", {"--program-dir", "$PROGRAM", "media", "$SAMPLE", "--jpg"}, "files:$PROGRAM"},
        Case{"split", {"split", "$SAMPLE", "$OUT/s.ipd", "--toggle", "11DBTop", "--toggle", "12DBTop"}, "tree:$OUT/s.ipd"},
        Case{"merge",
             {"merge", "$SAMPLE", "$SAMPLE", "$OUT/m.ipd", "--toggle1", "12DBTop", "--toggle1", "7DBTop", "--toggle2",
              "12DBTop"},
             "tree:$OUT/m.ipd"},
        Case{"sb-edit",
             {"--out-dir", "$OUT", "sb-edit", "$SAMPLE", "3043:3340", "--set", "17=Edited", "--set", "21=Changed",
              "--save-all"},
             "tree:export"},
        Case{"convert-bbb-win", {"convert", "$SAMPLE", "$OUT/w.bbb", "--to", "bbb-win"}, "tree:$OUT/w.bbb"},
        Case{"convert-bbb-mac", {"convert", "$SAMPLE", "$OUT/m.bbb", "--to", "bbb-mac"}, "tree:$OUT/m.bbb"},
        Case{"convert-ipd", {"convert", "$SAMPLE", "$OUT/c.ipd", "--to", "ipd"}, "tree:$OUT/c.ipd"}),
    [](const auto& info) { return Replace(info.param.name, "-", "_"); });

// Record text leaves as UTF-8 lines with control characters escaped; a stop is
// 1 with the message alone on standard error; a malformed command line is 2.
TEST(CliBasics, EscapingAndExitStatuses) {
  TempFolder folder;
  IpdBuilder b;
  b.Database("Handheld Agent").Database("SMS Messages");
  b.Add(SmsRecord(1, false, 0, 0, {{2, Concat({Hex("C7"), Text("\\1")})}, {4, Text("a\r\nc")}}));
  const std::string path = folder.Write("s.ipd", b.Build());
  const CliRun tree = RunCli({"tree", path});
  EXPECT_EQ(tree.exitCode, 0) << tree.err;
  EXPECT_NE(tree.out.find("\t" + b.SpanOf(0) + "\t\xD8\xA7\\\\1\n"), std::string::npos) << tree.out;
  EXPECT_NE(RunCli({"show", path, b.SpanOf(0)}).out.find("\nMessage=a\\r\\nc\n"), std::string::npos);

  const CliRun failed = RunCli({"status", folder.Write("empty.ipd", {})});
  EXPECT_EQ(failed.exitCode, 1);
  EXPECT_EQ(failed.err, "Error Parsing the file, couldn't read the DB titles\n");
  EXPECT_EQ(failed.out, "");

  for (const std::vector<std::string>& args : std::vector<std::vector<std::string>>{
           {}, {"--bogus", "tree", "x.ipd"}, {"frobnicate"}, {"tree", "x.ipd", "--bogus"}, {"tree"}, {"--timezone"}}) {
    const CliRun run = RunCli(args);
    EXPECT_EQ(run.exitCode, 2) << ::testing::PrintToString(args);
    EXPECT_EQ(run.out, "");
    const std::string offending = args.size() < 2 ? "" : args[0] == "tree" ? "'--bogus'" : "'" + args[0] + "'";
    EXPECT_NE(run.err.find(offending), std::string::npos) << run.err;
  }
}

// The overview's command list is the one every other text names: each command's
// own help, the usage text of a malformed line, and the manual page.
TEST(CliHelp, EveryCommandIsDocumentedWherever) {
  const CliRun help = RunCli({"--help"});
  ASSERT_EQ(help.exitCode, 0);
  std::vector<std::string> names;
  std::istringstream lines(help.out.substr(help.out.find("commands:\n") + 10));
  for (std::string line; std::getline(lines, line) && !line.empty();) names.push_back(line.substr(2, line.find(' ', 2) - 2));
  ASSERT_EQ(names.size(), 10u);
  const std::string usage = RunCli({"frobnicate"}).err;
  const std::string page = ReadText(SourceFile("packaging/man/orchidlamp-cli.1"));
  for (const std::string& name : names) {
    const CliRun own = RunCli({name, "--help"});
    EXPECT_EQ(own.exitCode, 0);
    EXPECT_TRUE(own.out.starts_with("usage: orchidlamp-cli [GLOBAL OPTIONS] " + name + " ")) << own.out;
    EXPECT_NE(usage.find(" " + name), std::string::npos) << name;
    const std::string roff = Replace(name, "-", "\\-");
    EXPECT_TRUE(page.find(".BI " + roff + " ") != std::string::npos || page.find("\\fB" + roff + "\\fI") != std::string::npos)
        << name;
  }
  EXPECT_EQ(RunCli({"--version"}).out, "orchidlamp-cli " + std::string(kVersion) + "\n");
}

// The bundled sample the cases above run on is exactly what its generator makes.
TEST(Generators, SampleIsCommittedAsMade) {
  EXPECT_TRUE(SampleBackup() == ReadFile(SamplePath())) << "regenerate samples/sample.ipd with make_sample";
}

}  // namespace
}  // namespace orchidlamp::testing
