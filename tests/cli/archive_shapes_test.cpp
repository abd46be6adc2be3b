// Desktop backups of shapes no desktop software writes, and a backup larger
// than the memory the process may use, through the command line: each ends with
// its own message (or loads, where the shape is harmless) and leaves nothing in
// the temporary folder.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <map>
#include <string>

#include "core/hex_text.h"
#include "core/ipd_format.h"
#include "generators/hostile_archives.h"
#include "support/cli_runner.h"
#include "support/temp_folder.h"

namespace orchidlamp {
namespace {

using namespace orchidlamp::testing;

constexpr std::string_view kTitlesError = "Error Parsing the file, couldn't read the DB titles";

class ArchiveShapesTest : public ::testing::Test {
 protected:
  // The CLI's work folders go to TMPDIR: one of the test's own, to be seen empty.
  void SetUp() override {
    std::filesystem::create_directories(temp.File("tmp"));
    ::setenv("TMPDIR", temp.File("tmp").c_str(), 1);
  }
  void TearDown() override { ::unsetenv("TMPDIR"); }
  bool TempIsEmpty() const { return std::filesystem::is_empty(temp.File("tmp")); }

  TempFolder temp;
};

TEST_F(ArchiveShapesTest, EachShapeEndsWithItsMessage) {
  // Empty words: the archive loads.
  const std::map<std::string, std::string> expected = {
      {"inflates-past-size", "is larger than it states"},
      {"encrypted", "is encrypted (Manifest.xml)"},
      {"same-name", "holds two entries named 1.dat"},
      {"dotdot-backslash", "holds an unsafe entry name: Databases\\..\\..\\1.dat"},
      {"drive-letter", "holds an unsafe entry name: C:/Databases/1.dat"},
      {"nul-in-name", "holds an unsafe entry name: 1.dat ../../x"},
      {"million-databases", "Manifest.xml holds more elements than a desktop backup's XML file can"},
      {"dat-states-4gib", "unpacks to more than it can hold (Databases/1.dat)"},
      {"record-states-4gib", "1.dat in the desktop backup is shorter than its lengths state"},
      {"bbb-in-bbb", ""},
      {"bbb-as-mac-ipd", std::string(kTitlesError)},
  };
  const auto shapes = HostileArchives();
  ASSERT_EQ(shapes.size(), expected.size());
  for (const auto& [name, zip] : shapes) {
    SCOPED_TRACE(name);
    const std::string& words = expected.at(name);
    const std::string path = temp.Write(name + ".bbb", zip);
    const CliRun run = RunCli({"convert", path, temp.File(name + ".ipd"), "--to", "ipd"});
    if (words.empty()) {
      EXPECT_EQ(run.exitCode, 0) << run.err;
      EXPECT_NE(RunCli({"tree", path}).out.find("\tMemos\n2\t"), std::string::npos);
      std::filesystem::remove_all(temp.File("tmp"));
      std::filesystem::create_directories(temp.File("tmp"));
      continue;
    }
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.err.find(words), std::string::npos) << run.err;
    EXPECT_FALSE(FileExists(temp.File(name + ".ipd")));
    EXPECT_TRUE(TempIsEmpty());
  }
}

TEST_F(ArchiveShapesTest, MoreEntriesThanTheZipCountHoldsAreRefused) {
  const std::string path = temp.Write("many.bbb", ManyEntriesArchive(65536));
  const CliRun run = RunCli({"tree", path});
  EXPECT_EQ(run.exitCode, 1);
  EXPECT_NE(run.err.find("holds too many entries (65536)"), std::string::npos) << run.err;
  EXPECT_TRUE(TempIsEmpty());
}

// AddressSanitizer cannot run under an address-space limit: neither this test
// built with it nor a command line built with it (the probe).
TEST_F(ArchiveShapesTest, ABackupLargerThanTheMemoryAllowedIsAMessage) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "built with AddressSanitizer";
#endif
  // 300 MB, sparse: a valid header and no names, under a 200 MB limit.
  const std::string path = temp.Write("large.ipd", HexToBytes(IpdHeaderHex(0)));
  ASSERT_EQ(::truncate(path.c_str(), 300 << 20), 0);
  rlimit saved{};
  ::getrlimit(RLIMIT_AS, &saved);
  rlimit limited = saved;
  limited.rlim_cur = 200 << 20;
  ASSERT_EQ(::setrlimit(RLIMIT_AS, &limited), 0);
  const CliRun probe = RunCli({"--version"});
  const CliRun run = RunCli({"status", path});
  ::setrlimit(RLIMIT_AS, &saved);
  if (probe.exitCode != 0) GTEST_SKIP() << "the command line cannot start under 200 MB: " << probe.err;
  EXPECT_EQ(run.exitCode, 1);
  EXPECT_EQ(run.err, "Not enough memory to load " + path + "\n");
}

}  // namespace
}  // namespace orchidlamp
