// Every command of the command line on the bundled sample, with what it writes
// read back: the pictures come out byte for byte, every export scope writes its
// file, and split, merge, the service-book editor and the conversions produce
// backups the loader reads with the expected databases and values.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <sstream>

#include "support/cli_runner.h"
#include "support/temp_folder.h"

namespace orchidlamp::testing {
namespace {

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

std::vector<std::string> Columns(const std::string& line) {
  std::vector<std::string> columns;
  std::istringstream in(line);
  for (std::string c; std::getline(in, c, '\t');) columns.push_back(c);
  return columns;
}

// Tree lines below the root; without tags when asked, since a conversion that
// drops marker blocks moves the records that follow them.
std::vector<std::string> TreeOf(const std::string& path, bool withTags = true) {
  const CliRun run = RunCli({"tree", path});
  EXPECT_EQ(run.exitCode, 0) << run.err;
  std::vector<std::string> lines = Lines(run.out);
  if (!lines.empty()) lines.erase(lines.begin());
  if (!withTags)
    for (std::string& line : lines) {
      auto c = Columns(line);
      if (c.size() == 5) line = c[0] + "\t" + c[1] + "\t" + c[2] + "\t\t" + c[4];
    }
  return lines;
}

std::string SampleTag(const std::string& label) {
  for (const std::string& line : TreeOf(SamplePath())) {
    const auto c = Columns(line);
    if (c.size() == 5 && c[0] == "2" && c[4] == label) return c[3];
  }
  ADD_FAILURE() << "no record labelled " << label;
  return {};
}

std::string StatusOf(const std::string& path) {
  const CliRun run = RunCli({"status", path});
  EXPECT_EQ(run.exitCode, 0) << run.err;
  const auto lines = Lines(run.out);
  return lines.size() == 2 ? lines[1] : std::string();
}

// The bytes from the first `start` to the first `end` after it, `extra` past it.
Bytes Between(const Bytes& file, const Bytes& start, const Bytes& end, std::size_t extra) {
  const auto s = std::search(file.begin(), file.end(), start.begin(), start.end());
  const auto e = std::search(s, file.end(), end.begin(), end.end());
  if (s == file.end() || e == file.end()) return {};
  return Bytes(s, e + static_cast<std::ptrdiff_t>(std::min<std::size_t>(extra, file.end() - e)));
}

const Bytes kJfif = {0xFF, 0xD8, 0xFF, 0xE0, 0x00, 0x10, 0x4A, 0x46, 0x49, 0x46, 0x00};
const Bytes kPng = {0x89, 0x50, 0x4E, 0x47, 0x0D, 0x0A, 0x1A, 0x0A, 0x00, 0x00, 0x00, 0x0D, 0x49, 0x48, 0x44, 0x52};

TEST(SampleCommands, PicturesComeOutByteForByte) {
  TempFolder program;
  std::filesystem::create_directory(program.File("media"));
  const Bytes sample = ReadFile(SamplePath());

  CliRun run = RunCli({"--program-dir", program.path(), "media", SamplePath(), "--jpg"});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  auto lines = Lines(run.out);
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_EQ(lines[1], "Successfully saved 1 JPG images in the media folder.");
  const Bytes jpeg = Between(sample, kJfif, {0xFF, 0xD9}, 1);  // through the FF, not the D9
  ASSERT_FALSE(jpeg.empty());
  EXPECT_EQ(ReadFile(lines[0]), jpeg);

  run = RunCli({"--program-dir", program.path(), "media", SamplePath(), "--png"});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  lines = Lines(run.out);
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_EQ(ReadFile(lines[0]), Between(sample, kPng, {'I', 'E', 'N', 'D'}, 8));

  // The contact with the photo writes it whole as PIC + its span's first offset.
  const std::string tag = SampleTag("Omar");
  run = RunCli({"--program-dir", program.path(), "show", SamplePath(), tag});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  const std::string pic = program.File("PIC" + tag.substr(0, tag.find(':')) + ".jpg");
  EXPECT_NE(run.out.find("PhotoFile=" + pic + "\n"), std::string::npos) << run.out;
  Bytes whole = jpeg;
  whole.push_back(0xD9);
  EXPECT_EQ(ReadFile(pic), whole);
}

TEST(SampleCommands, EveryScopeOfBothFormsWritesItsFile) {
  TempFolder out, program;
  const std::vector<std::string> records = {"+14165550134", "Ann Lee", "Maria Garcia", "teh", "Dentist",
                                            "Project review", "Shopping list", "Reception", "Renew passport",
                                            "BlackBerry"};
  for (const std::string form : {"--txt", "--csv"}) {
    std::vector<std::vector<std::string>> runs = {{"--scope", "all"}};
    for (const std::string& label : records) {
      runs.push_back({"--scope", "record", "--node", SampleTag(label)});
      runs.push_back({"--scope", "kind", "--node", SampleTag(label)});
    }
    for (const auto& scope : runs) {
      std::vector<std::string> args = {"--out-dir", out.path(), "--program-dir", program.path(), "export",
                                       SamplePath(), form};
      args.insert(args.end(), scope.begin(), scope.end());
      const CliRun run = RunCli(args);
      SCOPED_TRACE(form + " " + scope[1] + (scope.size() > 2 ? " " + scope[3] : ""));
      ASSERT_EQ(run.exitCode, 0) << run.err;
      const std::string prefix = "Export to: " + out.path() + "/OL_Export_";
      ASSERT_EQ(run.out.rfind(prefix, 0), 0u) << run.out;
      const std::string path = run.out.substr(11, run.out.size() - 11 - std::string(" is complete.\n").size());
      const Bytes written = ReadFile(path);
      // Bookmarks have no title for one record or their kind: an empty file.
      const bool bookmark = scope.size() > 2 && scope[3] == SampleTag("BlackBerry");
      EXPECT_EQ(written.empty(), bookmark) << path;
    }
  }
}

TEST(SampleCommands, SplitAndMergeReadBack) {
  TempFolder out;
  const std::string split = out.File("split.ipd");
  CliRun run = RunCli({"split", SamplePath(), split, "--toggle", "11DBTop", "--toggle", "12DBTop"});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  EXPECT_EQ(run.out, "File saved as " + split + "\n");
  EXPECT_EQ(StatusOf(split),
            "0 SMS Messages, 0 Address Book (All), 3 Tasks, 0 Memos, 0 Calendar, 0 Phone Calls, 2 Service Book");

  // Tasks ticked in both trees gather under one database; Memos come first in the
  // written file, so they stand at database 0 (read as bookmarks, as always).
  const std::string merged = out.File("merged.ipd");
  run = RunCli({"merge", SamplePath(), SamplePath(), merged, "--toggle1", "12DBTop", "--toggle1", "7DBTop",
                "--toggle2", "12DBTop"});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  EXPECT_EQ(StatusOf(merged),
            "0 SMS Messages, 0 Address Book (All), 6 Tasks, 0 Memos, 0 Calendar, 0 Phone Calls, 0 Service Book");
  const auto tree = TreeOf(merged);
  ASSERT_GE(tree.size(), 2u);
  EXPECT_EQ(Columns(tree[0]).back(), "Memos");
}

TEST(SampleCommands, ServiceBookEditsSaveAloneAndWithTheirDatabase) {
  TempFolder out;
  const std::string tag = SampleTag("Browser Config");
  std::size_t aloneSize = 0;
  for (const std::string how : {"--save", "--save-all"}) {
    const CliRun run = RunCli({"--out-dir", out.path(), "sb-edit", SamplePath(), tag, "--set", "17=Edited Config",
                               "--set", "21=Changed", how});
    ASSERT_EQ(run.exitCode, 0) << run.err;
    ASSERT_EQ(run.out.rfind("File saved as " + out.path() + "/OL_Export_", 0), 0u) << run.out;
    const std::string saved = run.out.substr(14, run.out.size() - 15);
    // The other service book keeps its source database id, which the one-database
    // file does not have: it is in the file but shows no node.
    const auto tree = TreeOf(saved);
    ASSERT_EQ(tree.size(), 2u);
    const std::size_t size = ReadFile(saved).size();
    if (how == "--save") aloneSize = size;
    else EXPECT_GT(size, aloneSize);
    EXPECT_EQ(Columns(tree[1]).back(), "Edited Config");
    const CliRun shown = RunCli({"show", saved, Columns(tree[1])[3]});
    EXPECT_NE(shown.out.find("hrtnet(21)=Changed\n"), std::string::npos) << shown.out;
    std::remove(saved.c_str());  // two saves in one second share a name
  }
}

TEST(SampleCommands, ConversionsToEveryKindAndBack) {
  TempFolder out;
  const auto original = TreeOf(SamplePath(), false);
  const std::vector<std::pair<std::string, std::vector<std::string>>> kinds = {
      {"bbb-win", {"Databases/1.dat", "Databases/10.dat", "Databases/11.dat", "Databases/12.dat",
                   "Databases/13.dat", "Databases/2.dat", "Databases/3.dat", "Databases/4.dat", "Databases/5.dat",
                   "Databases/6.dat", "Databases/7.dat", "Databases/8.dat", "Databases/9.dat", "Manifest.xml"}},
      {"bbb-mac", {"BlackBerry_Backup.xml", "Databases/Databases.ipd"}},
  };
  for (const auto& [kind, entries] : kinds) {
    const std::string bbb = out.File(kind + ".bbb");
    CliRun run = RunCli({"convert", SamplePath(), bbb, "--to", kind});
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(run.out, "File saved successfully in " + bbb + "\n");
    EXPECT_EQ(TreeOf(bbb, false), original) << kind;

    // The archive lists the entries the desktop software expects.
    FILE* list = popen(("unzip -Z1 '" + bbb + "' | sort").c_str(), "r");
    ASSERT_NE(list, nullptr);
    std::string names;
    for (char buf[256]; fgets(buf, sizeof buf, list);) names += buf;
    pclose(list);
    EXPECT_EQ(Lines(names), entries) << kind;

    const std::string back = out.File(kind + ".ipd");
    run = RunCli({"convert", bbb, back, "--to", "ipd"});
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(TreeOf(back, false), original) << kind;
  }
}

}  // namespace
}  // namespace orchidlamp::testing
