// What a user reads before the first run: --help, COMMAND --help, --version,
// the manual page, and the words a usage error points at.

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "support/cli_runner.h"
#include "support/temp_folder.h"

namespace orchidlamp {
namespace {

using namespace orchidlamp::testing;

const std::vector<std::string> kDocumentedCommands = {"tree",  "status", "show",    "export",  "media",
                                                      "split", "merge",  "sb-edit", "convert", "migrate"};

std::string SourceFile(const std::string& relative) {
  const std::string self = __FILE__;
  const std::string root = self.substr(0, self.rfind("/tests/cli/"));
  std::ifstream in(root + "/" + relative);
  std::stringstream text;
  text << in.rdbuf();
  return text.str();
}

std::vector<std::string> Words(const std::string& line) {
  std::vector<std::string> words;
  std::istringstream in(line);
  for (std::string w; in >> w;) words.push_back(w);
  return words;
}

std::string Replace(std::string text, const std::string& from, const std::string& to) {
  for (auto at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
    text.replace(at, from.size(), to);
  return text;
}

TEST(CliHelp, TheOverviewListsEveryCommandOnOneLineWithAnExample) {
  const CliRun run = RunCli({"--help"});
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_EQ(run.err, "");
  std::vector<std::string> listed;
  std::istringstream lines(run.out.substr(run.out.find("commands:\n") + 10));
  for (std::string line; std::getline(lines, line) && !line.empty();) listed.push_back(Words(line).at(0));
  EXPECT_EQ(listed, kDocumentedCommands);
  EXPECT_NE(run.out.find("\nexample: orchidlamp-cli tree "), std::string::npos);
  for (const char* option : {"--timezone", "--delimiter", "--program-dir", "--out-dir", "--version"})
    EXPECT_NE(run.out.find(option), std::string::npos) << option;
  EXPECT_EQ(RunCli({"-h"}).out, run.out);
}

// Every command's help names its synopsis and an example; the examples that
// work on the bundled sample run as printed (with a scratch folder for /tmp).
TEST(CliHelp, EachCommandHasItsOwnHelpWhoseExampleRuns) {
  TempFolder scratch;
  for (const std::string& name : kDocumentedCommands) {
    SCOPED_TRACE(name);
    const CliRun run = RunCli({name, "--help"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.out.rfind("usage: orchidlamp-cli [GLOBAL OPTIONS] " + name + " ", 0), 0u) << run.out;
    EXPECT_EQ(RunCli({"--help", name}).out, run.out);
    EXPECT_EQ(RunCli({"--timezone", "+3", name, "x", "--help"}).out, run.out);

    const auto at = run.out.find("\nexample: ");
    ASSERT_NE(at, std::string::npos);
    const std::string example = run.out.substr(at + 10, run.out.find('\n', at + 1) - at - 10);
    std::vector<std::string> words = Words(example);
    ASSERT_EQ(words.at(0), "orchidlamp-cli");
    if (example.find("samples/sample.ipd") == std::string::npos) continue;
    words.erase(words.begin());
    for (std::string& w : words) {
      // /tmp first: the sample's own path may lie under /tmp.
      w = Replace(w, "/tmp", scratch.path());
      w = Replace(w, "samples/sample.ipd", SamplePath());
    }
    const CliRun ran = RunCli(words);
    EXPECT_EQ(ran.exitCode, 0) << example << "\n" << ran.err;
  }
}

TEST(CliHelp, VersionIsTheProjectsVersion) {
  const CliRun run = RunCli({"--version"});
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_EQ(run.out, "orchidlamp-cli 3.5.0\n");
}

TEST(CliHelp, UsageErrorsNameTheOffendingWord) {
  for (const std::vector<std::string>& args : std::vector<std::vector<std::string>>{
           {"--bogus", "tree", "x.ipd"}, {"-x", "tree"}, {"frobnicate", "--help"}, {"tree", "x.ipd", "--bogus"}}) {
    const CliRun run = RunCli(args);
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_EQ(run.out, "");
    const std::string& offending = args[0] == "tree" ? args[2] : args[0];
    EXPECT_NE(run.err.find("'" + offending + "'"), std::string::npos) << run.err;
  }
  const CliRun run = RunCli({"show", "x.ipd", "--out-dir"});
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_NE(run.err.find("--out-dir"), std::string::npos);
}

TEST(CliHelp, TheManualPageDescribesEveryCommandAndOption) {
  const std::string page = SourceFile("packaging/man/orchidlamp-cli.1");
  ASSERT_FALSE(page.empty());
  EXPECT_EQ(page.rfind(".TH ORCHIDLAMP-CLI 1 ", 0), 0u);
  for (const std::string& name : kDocumentedCommands) {
    const std::string roff = Replace(name, "-", "\\-");
    EXPECT_TRUE(page.find(".BI " + roff + " ") != std::string::npos || page.find("\\fB" + roff + "\\fI") != std::string::npos)
        << name;
  }
  for (const char* option : {"timezone", "delimiter", "program\\-dir", "out\\-dir", "help", "version"})
    EXPECT_NE(page.find("\\-\\-" + std::string(option)), std::string::npos) << option;
}

}  // namespace
}  // namespace orchidlamp
