// Every writing command against real write failures: a full file system, a
// read-only folder and a folder where the output file should go. Each stops
// with status 1, its message and the system's reason; leaves no file it made;
// leaves a file it could not write over as it was; and never touches the backup.

#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <ctime>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "core/time_stamp.h"
#include "support/cli_runner.h"
#include "support/temp_folder.h"

namespace orchidlamp {
namespace {

using namespace orchidlamp::testing;
namespace fs = std::filesystem;

enum class Kind { Full, ReadOnly, Folder };

struct Command {
  std::string name;
  std::vector<std::string> args;  // "DIR" and "BACKUP" are replaced
  std::vector<std::string> named;  // fixed output names in DIR
  std::string stamped = {};  // a time-stamped output name: prefix, then ddhhnnss + suffix
  std::string suffix = {};
  bool convert = false;
};

std::set<std::string> Listing(const std::string& dir) {
  std::set<std::string> names;
  for (const auto& e : fs::recursive_directory_iterator(dir)) names.insert(e.path().string());
  return names;
}

// A folder that fails writes the way `kind` says. As root, a small tmpfs (full,
// or read-only, since root writes through permission bits); else permission
// bits, and no full disk (hostile_inputs_test runs one under a file-size limit).
class FailingFolder {
 public:
  FailingFolder(const std::string& path, Kind kind) : path_(path), kind_(kind) {
    fs::create_directories(path);
    root_ = ::geteuid() == 0 && kind != Kind::Folder &&
            ::mount("tmpfs", path.c_str(), "tmpfs", 0, "size=64k") == 0;
  }
  bool usable() const { return root_ || kind_ != Kind::Full; }
  // Call after the folder holds what the command must find there. Returns the
  // reason the system will give.
  std::string Arm() {
    if (kind_ == Kind::Folder) return "it is a folder";
    if (kind_ == Kind::ReadOnly) {
      if (root_) {
        ::mount(nullptr, path_.c_str(), nullptr, MS_REMOUNT | MS_RDONLY, "size=64k");
      } else {
        for (const auto& e : fs::directory_iterator(path_)) ::chmod(e.path().c_str(), 0444);
        ::chmod(path_.c_str(), 0555);
      }
      return root_ ? "Read-only file system" : "Permission denied";
    }
    FILE* f = std::fopen((path_ + "/.filler").c_str(), "wb");
    const std::string block(4096, 'f');
    while (f && std::fwrite(block.data(), 1, block.size(), f) == block.size() && std::fflush(f) == 0) {}
    if (f) std::fclose(f);
    return "No space left on device";
  }
  ~FailingFolder() {
    if (root_) ::umount(path_.c_str());
    else ::chmod(path_.c_str(), 0755);
  }

 private:
  std::string path_;
  Kind kind_;
  bool root_ = false;
};

TEST(FailingWritesTest, EveryWriterSaysWhyAndLeavesNoPartialFile) {
  TempFolder folder;
  const Bytes original = ReadFile(SamplePath());
  const std::string backup = folder.Write("open.ipd", original);
  const std::vector<Command> commands = {
      {"export", {"--out-dir", "DIR", "export", "BACKUP", "--txt", "--scope", "all"}, {}, "OL_Export_", ".txt"},
      {"media", {"--program-dir", "DIR", "media", "BACKUP", "--jpg"}, {}, "media/", "_0.JPG"},
      {"split", {"split", "BACKUP", "DIR/out.ipd", "--toggle", "Top"}, {"out.ipd"}},
      {"merge", {"merge", "BACKUP", "BACKUP", "DIR/out.ipd", "--toggle1", "Top"}, {"out.ipd"}},
      {"sb-edit", {"--out-dir", "DIR", "sb-edit", "BACKUP", "3043:3340", "--save"}, {}, "OL_Export_", ".ipd"},
      {"convert ipd", {"convert", "BACKUP", "DIR/out.ipd", "--to", "ipd"}, {"out.ipd"}, {}, {}, true},
      {"convert bbb-win", {"convert", "BACKUP", "DIR/out.bbb", "--to", "bbb-win"}, {"out.bbb"}, {}, {}, true},
      {"convert bbb-mac", {"convert", "BACKUP", "DIR/out.bbb", "--to", "bbb-mac"}, {"out.bbb"}, {}, {}, true},
  };
  const Bytes existing = Bytes(10, 'x');
  for (Kind kind : {Kind::Full, Kind::ReadOnly, Kind::Folder}) {
    for (const Command& c : commands) {
      SCOPED_TRACE(c.name + " kind " + std::to_string(static_cast<int>(kind)));
      const std::string dir = folder.File("out");
      FailingFolder failing(dir, kind);
      if (!failing.usable()) continue;
      if (c.stamped == "media/" || kind == Kind::Folder) fs::create_directories(dir + "/media");
      // A file to be written over in the read-only folder; a folder at every
      // name the command may choose within the next seconds.
      for (const std::string& name : c.named) {
        if (kind == Kind::Folder) fs::create_directories(dir + "/" + name);
        if (kind == Kind::ReadOnly) folder.Write("out/" + name, existing);
      }
      for (int s = 0; kind == Kind::Folder && !c.stamped.empty() && s < 5; ++s)
        fs::create_directories(dir + "/" + c.stamped + DdHhNnSs(std::time(nullptr) + s) + c.suffix);
      const std::string reason = failing.Arm();
      const std::set<std::string> before = Listing(dir);
      std::vector<std::string> args;
      for (std::string a : c.args) {
        if (a.starts_with("DIR")) a.replace(0, 3, dir);
        args.push_back(a == "BACKUP" ? backup : a);
      }
      const CliRun run = RunCli(args);
      EXPECT_EQ(run.exitCode, 1) << run.out;
      EXPECT_NE(run.err.find(c.convert ? "Error in convertion!!" : "Cannot write " + dir), std::string::npos) << run.err;
      EXPECT_NE(run.err.find(reason), std::string::npos) << run.err;
      EXPECT_EQ(Listing(dir), before);
      for (const std::string& name : c.named) {
        if (kind == Kind::ReadOnly) {
          EXPECT_EQ(ReadFile(dir + "/" + name), existing);
        }
      }
      EXPECT_EQ(ReadFile(backup), original);
    }
    fs::remove_all(folder.File("out"));
  }
}

}  // namespace
}  // namespace orchidlamp
