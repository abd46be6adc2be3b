// The command line over hostile files: empty, truncated, lying lengths, huge
// name tables, corrupt and crafted desktop backups, and output folders that
// refuse writes. Whatever comes in, the program ends with an exit status (never
// a signal); a stop is status 1 with a message on standard error; and a failed
// write leaves the open backup's bytes as they were.

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <optional>
#include <cstdint>
#include <string>
#include <vector>

#include "support/cli_runner.h"
#include "support/ipd_builder.h"
#include "generators/record_shapes.h"
#include "support/temp_folder.h"

namespace orchidlamp {
namespace {

using namespace orchidlamp::testing;

constexpr std::string_view kTitlesError = "Error Parsing the file, couldn't read the DB titles";
constexpr std::string_view kRecordsError = "Error Parsing the file, couldn't read the file records";

// Ended by itself, not by a signal (RunCli gives 128 + signal for those).
void ExpectExitStatus(const CliRun& run) {
  EXPECT_TRUE(run.exitCode == 0 || run.exitCode == 1) << "exit " << run.exitCode << "\n" << run.err;
  if (run.exitCode == 1) {
    EXPECT_FALSE(run.err.empty());
  }
}

// Stopped with status 1 and a message that holds `words`.
void ExpectStop(const CliRun& run, std::string_view words) {
  EXPECT_EQ(run.exitCode, 1) << run.out;
  EXPECT_NE(run.err.find(words), std::string::npos) << "expected '" << words << "' in: " << run.err;
}

// ---- zip archives made byte by byte, so they can lie -------------------------

std::uint32_t Crc32(const Bytes& bytes) {
  std::uint32_t crc = 0xFFFFFFFFu;
  for (std::uint8_t b : bytes) {
    crc ^= b;
    for (int k = 0; k < 8; ++k) crc = (crc >> 1) ^ (0xEDB88320u & (0u - (crc & 1u)));
  }
  return ~crc;
}

struct ZipEntry {
  std::string name;
  Bytes data;
  // The uncompressed size the headers state; by default the true one.
  std::optional<std::uint32_t> statedSize;
};

// A zip of stored (uncompressed) entries.
Bytes StoredZip(const std::vector<ZipEntry>& entries) {
  Bytes local, central;
  for (const ZipEntry& e : entries) {
    const std::uint32_t size = static_cast<std::uint32_t>(e.data.size());
    const std::uint32_t stated = e.statedSize.value_or(size);
    const Bytes common = Concat({LE16(20), LE16(0), LE16(0), LE16(0), LE16(0x21), LE32(Crc32(e.data)), LE32(size),
                                 LE32(stated), LE16(static_cast<std::uint32_t>(e.name.size())), LE16(0)});
    const std::uint32_t offset = static_cast<std::uint32_t>(local.size());
    local = Concat({local, Hex("504B0304"), common, Text(e.name), e.data});
    central = Concat({central, Hex("504B0102"), LE16(20), common, LE16(0), LE16(0), LE16(0), LE32(0), LE32(offset),
                      Text(e.name)});
  }
  const auto count = static_cast<std::uint32_t>(entries.size());
  return Concat({local, central, Hex("504B0506"), LE16(0), LE16(0), LE16(count), LE16(count),
                 LE32(static_cast<std::uint32_t>(central.size())), LE32(static_cast<std::uint32_t>(local.size())),
                 LE16(0)});
}

std::string Manifest(const std::string& databases) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?><BlackBerry_Backup><NessusOSDevice><Databases>" + databases +
         "</Databases></NessusOSDevice></BlackBerry_Backup>";
}

// ---- the backups ---------------------------------------------------------------

// A small backup with one of each thing the loader treats apart: a record of a
// known kind, a marker block, a service book and an unknown database.
Bytes SmallBackup() {
  ServiceBookValues sb;
  sb.name = "Browser";
  sb.uid = "S1";
  sb.cid = "BrowserConfig";
  return IpdBuilder()
      .Database("Memos")
      .Database("Service Book")
      .Database("Handheld Agent")
      .Add(FieldRecord(0, {{1, TextZ("title")}, {2, TextZ("body")}}))
      .Raw(MarkerBlock())
      .Add(FieldRecord(1, ServiceBookFields(sb)))
      .Add(FieldRecord(2, {{1, Text("x")}}))
      .Build();
}

// The count the loader reads, in bytes 40-41; the builder's header keeps only its low byte.
Bytes WithNameCount(Bytes ipd, std::uint32_t count) {
  ipd[40] = static_cast<std::uint8_t>(count);
  ipd[41] = static_cast<std::uint8_t>(count >> 8);
  return ipd;
}

Bytes ManyDatabases(std::uint32_t count) {
  IpdBuilder b;
  for (std::uint32_t i = 0; i + 1 < count; ++i) b.Database("D" + std::to_string(i));
  b.Database("Memos");
  // A record in the last database: the id needs both bytes past 255.
  b.Add(FieldRecord(static_cast<std::uint16_t>(count - 1), {{1, TextZ("last")}}));
  return WithNameCount(b.Build(), count);
}

class HostileInputsTest : public ::testing::Test {
 protected:
  TempFolder folder;
};

TEST_F(HostileInputsTest, EmptyFileIsRefusedByEveryCommand) {
  const std::string empty = folder.Write("empty.ipd", {});
  for (const std::vector<std::string>& args : std::vector<std::vector<std::string>>{
           {"tree", empty},
           {"status", empty},
           {"export", empty, "--txt", "--scope", "all"},
           {"media", empty, "--jpg", "--program-dir", folder.path()},
           {"split", empty, folder.File("out.ipd")},
           {"convert", empty, folder.File("out.bbb"), "--to", "bbb-win"}}) {
    SCOPED_TRACE(args[0]);
    ExpectStop(RunCli(args), kTitlesError);
  }
}

TEST_F(HostileInputsTest, EveryTruncationOfASmallBackupEndsWithAStatusAndAMessage) {
  const Bytes whole = SmallBackup();
  std::size_t stopped = 0;
  for (std::size_t length = 0; length < whole.size(); ++length) {
    SCOPED_TRACE("truncated at " + std::to_string(length));
    const std::string path = folder.Write("cut.ipd", Bytes(whole.begin(), whole.begin() + static_cast<long>(length)));
    const CliRun run = RunCli({"tree", path});
    ExpectExitStatus(run);
    if (run.exitCode == 1) {
      ++stopped;
      EXPECT_TRUE(run.err.find(kTitlesError) != std::string::npos || run.err.find(kRecordsError) != std::string::npos)
          << run.err;
    }
  }
  // Most cuts fall inside a header, a name or a record.
  EXPECT_GT(stopped, whole.size() / 2);
}

TEST_F(HostileInputsTest, LengthsAtZeroAndAtTheTop) {
  const Bytes good = IpdBuilder().Database("Memos").Add(FieldRecord(0, {{1, TextZ("m")}})).Build();
  const std::size_t recordAt = good.size() - RecordBytes(FieldRecord(0, {{1, TextZ("m")}})).size();

  // A record length of 0 leaves a record with no body: shown, decoded as empty.
  Bytes zero = IpdBuilder().Database("Memos").Build();
  zero = Concat({zero, LE16(0), LE32(0)});
  CliRun run = RunCli({"tree", folder.Write("zero.ipd", zero)});
  ExpectExitStatus(run);

  Bytes top = good;
  top[recordAt + 2] = top[recordAt + 3] = top[recordAt + 4] = top[recordAt + 5] = 0xFF;
  ExpectStop(RunCli({"tree", folder.Write("top.ipd", top)}), kRecordsError);

  Bytes nameTop = good;
  nameTop[42] = nameTop[43] = 0xFF;
  ExpectStop(RunCli({"tree", folder.Write("name-top.ipd", nameTop)}), kTitlesError);

  Bytes nameZero = good;
  nameZero[42] = nameZero[43] = 0x00;
  ExpectExitStatus(RunCli({"tree", folder.Write("name-zero.ipd", nameZero)}));

  ExpectStop(RunCli({"tree", folder.Write("count-top.ipd", WithNameCount(good, 0xFFFF))}), kTitlesError);
}

TEST_F(HostileInputsTest, NameTablesOf255And256And65535Databases) {
  for (std::uint32_t count : {255u, 256u, 65535u}) {
    SCOPED_TRACE(count);
    const std::string path = folder.Write("many.ipd", ManyDatabases(count));
    CliRun run = RunCli({"status", path});
    ASSERT_EQ(run.exitCode, 0) << run.err;
    run = RunCli({"tree", path});
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_NE(run.out.find("\tlast\n"), std::string::npos);
    // The Windows kind holds at most 250 databases.
    ExpectStop(RunCli({"convert", path, folder.File("many.bbb"), "--to", "bbb-win"}), "Error in convertion!!");
    EXPECT_FALSE(FileExists(folder.File("many.bbb")));
    // The Mac kind and the split take any count (the split's header keeps its low byte).
    run = RunCli({"convert", path, folder.File("many-mac.bbb"), "--to", "bbb-mac"});
    ExpectExitStatus(run);
    run = RunCli({"split", path, folder.File("split.ipd"), "--toggle", "Top"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
  }
}

TEST_F(HostileInputsTest, RecordEndingAtTheLastByteAndMarkersAtTheEnd) {
  IpdBuilder b;
  b.Database("Memos").Add(FieldRecord(0, {{1, TextZ("end")}}));
  const std::string span = b.SpanOf(0);
  CliRun run = RunCli({"tree", folder.Write("last.ipd", b.Build())});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  EXPECT_NE(run.out.find("\t" + span + "\t"), std::string::npos) << run.out;

  for (const Bytes& tail : {MarkerBlock(), Bytes{0xFF, 0xFF, 0x02, 0x00, 0x00}, Bytes{0xFF, 0xFF}}) {
    IpdBuilder m;
    m.Database("Memos").Add(FieldRecord(0, {{1, TextZ("end")}})).Raw(tail);
    run = RunCli({"tree", folder.Write("marker.ipd", m.Build())});
    // A marker is skipped only with a record after it: a block that ends the
    // file is read as a record that runs past the end.
    ExpectStop(run, kRecordsError);
  }
}

TEST_F(HostileInputsTest, DesktopBackupsThatAreNotWhatTheyClaim) {
  // Not a zip: read as an IPD by its content, whatever its name.
  ExpectStop(RunCli({"tree", folder.Write("text.bbb", Text("just text"))}), kTitlesError);
  // A zip signature and then nothing sensible.
  ExpectStop(RunCli({"tree", folder.Write("corrupt.bbb", Concat({Hex("504B0304"), Bytes(60, 0x41)}))}), "");
  // A good archive cut short.
  const Bytes dat = Concat({Hex("0100"), SmallBackup()});
  Bytes cut = StoredZip({{"Manifest.xml", Text(Manifest("<Database uid=\"1\"/>")), {}}, {"1.dat", dat, {}}});
  cut.resize(cut.size() - 30);
  ExpectStop(RunCli({"tree", folder.Write("cut.bbb", cut)}), "");
}

TEST_F(HostileInputsTest, CraftedArchivesAreRefusedBeforeAnythingIsRead) {
  const Bytes manifest = Text(Manifest("<Database uid=\"1\"/>"));
  struct Case {
    std::string name;
    Bytes zip;
    std::string_view words;
  };
  std::string many;
  for (int i = 1; i <= 40000; ++i) many += "<Database uid=\"" + std::to_string(i) + "\"/>";
  const std::vector<Case> cases = {
      {"zip-slip", StoredZip({{"Manifest.xml", manifest, {}}, {"../../1.dat", Text("x"), {}}}), "unsafe entry name"},
      {"absolute", StoredZip({{"Manifest.xml", manifest, {}}, {"/tmp/1.dat", Text("x"), {}}}), "unsafe entry name"},
      {"bomb", StoredZip({{"Manifest.xml", manifest, {}}, {"1.dat", Text("x"), 0xFFFFFFF0u}}),
       "unpacks to more than it can hold"},
      {"dtd",
       StoredZip({{"Manifest.xml",
                   Text("<?xml version=\"1.0\"?><!DOCTYPE b [<!ENTITY e SYSTEM \"file:///etc/passwd\">]>"
                        "<BlackBerry_Backup>&e;</BlackBerry_Backup>"),
                   {}}}),
       ""},
      {"entities",
       StoredZip({{"Manifest.xml", Text("<?xml version=\"1.0\"?><BlackBerry_Backup>&lol;</BlackBerry_Backup>"), {}}}),
       ""},
      {"40000-databases", StoredZip({{"Manifest.xml", Text(Manifest(many)), {}}}), "40000"},
      {"missing-dat", StoredZip({{"Manifest.xml", manifest, {}}}), "lacks 1.dat"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const std::string path = folder.Write(c.name + ".bbb", c.zip);
    ExpectStop(RunCli({"tree", path}), c.words);
    ExpectStop(RunCli({"convert", path, folder.File(c.name + ".ipd"), "--to", "ipd"}), c.words);
    EXPECT_FALSE(FileExists(folder.File(c.name + ".ipd")));
  }
  EXPECT_FALSE(FileExists(folder.path() + "/../1.dat"));
}

// Root writes through permission bits, so there a folder of a file system that
// refuses new files stands in for a read-only folder.
std::string ReadOnlyFolder(const TempFolder& folder) {
  if (::geteuid() == 0) return "/proc/self";
  const std::string path = folder.File("read-only");
  ::mkdir(path.c_str(), 0555);
  return path;
}

// A full disk, as far as the programs started under it can tell: files cannot
// grow past a few bytes (the write fails with EFBIG instead of a signal).
class FullDisk {
 public:
  FullDisk() {
    ::getrlimit(RLIMIT_FSIZE, &saved_);
    previous_ = std::signal(SIGXFSZ, SIG_IGN);
    rlimit small = saved_;
    small.rlim_cur = 16;
    ::setrlimit(RLIMIT_FSIZE, &small);
  }
  ~FullDisk() {
    ::setrlimit(RLIMIT_FSIZE, &saved_);
    std::signal(SIGXFSZ, previous_);
  }

 private:
  rlimit saved_{};
  void (*previous_)(int) = SIG_DFL;
};

TEST_F(HostileInputsTest, FailedWritesSayWhyAndLeaveTheOpenBackupAsItWas) {
  const Bytes original = SmallBackup();
  const std::string backup = folder.Write("open.ipd", original);
  const std::string readOnly = ReadOnlyFolder(folder);
  const std::string sbTag = [&] {
    const CliRun tree = RunCli({"tree", backup});
    const auto at = tree.out.find("\tservicebook\t");
    const auto start = at + std::string_view("\tservicebook\t").size();
    return tree.out.substr(start, tree.out.find('\t', start) - start);
  }();
  ASSERT_FALSE(sbTag.empty());

  struct Case {
    std::string what;
    std::vector<std::string> args;
  };
  const std::vector<Case> cases = {
      {"export to a read-only folder", {"--out-dir", readOnly, "export", backup, "--csv", "--scope", "all"}},
      {"editor save to a read-only folder", {"--out-dir", readOnly, "sb-edit", backup, sbTag, "--save"}},
      {"split to a folder", {"split", backup, folder.path(), "--toggle", "Top"}},
      {"convert to a folder", {"convert", backup, folder.path(), "--to", "bbb-win"}},
      {"export into a file instead of a folder", {"--out-dir", backup, "export", backup, "--txt", "--scope", "all"}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    const CliRun run = RunCli(c.args);
    EXPECT_EQ(run.exitCode, 1) << run.out;
    EXPECT_FALSE(run.err.empty());
    EXPECT_EQ(ReadFile(backup), original);
  }

  const std::vector<Case> full = {
      {"split", {"split", backup, folder.File("split.ipd"), "--toggle", "Top"}},
      {"merge", {"merge", backup, backup, folder.File("merge.ipd"), "--toggle1", "Top"}},
      {"convert", {"convert", backup, folder.File("copy.ipd"), "--to", "ipd"}},
      {"convert", {"convert", backup, folder.File("copy.bbb"), "--to", "bbb-mac"}},
      {"export", {"--out-dir", folder.path(), "export", backup, "--txt", "--scope", "all"}},
      {"sb-edit", {"--out-dir", folder.path(), "sb-edit", backup, sbTag, "--save-all"}},
  };
  for (const Case& c : full) {
    SCOPED_TRACE(c.what + " on a full disk");
    CliRun run;
    {
      FullDisk disk;
      run = RunCli(c.args);
    }
    EXPECT_EQ(run.exitCode, 1) << run.out;
    EXPECT_FALSE(run.err.empty());
    EXPECT_EQ(ReadFile(backup), original);
  }
  EXPECT_FALSE(FileExists(folder.File("copy.ipd")));
  EXPECT_FALSE(FileExists(folder.File("copy.bbb")));
}

}  // namespace
}  // namespace orchidlamp
