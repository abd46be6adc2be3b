// One case per row of the README's hostile-input table, through the real command
// line: it ends with 0 or 1 (never a signal), a stop says why on standard error,
// a failed write leaves the open backup as it was. The fuzzers do the rest.

#include <gtest/gtest.h>

#include <optional>
#include <regex>

#include "generators/record_shapes.h"
#include "support/cli_runner.h"
#include "support/ipd_builder.h"
#include "support/temp_folder.h"

namespace orchidlamp::testing {
namespace {

constexpr const char* kTitles = "Error Parsing the file, couldn't read the DB titles";
constexpr const char* kRecords = "Error Parsing the file, couldn't read the file records";

std::uint32_t Crc32(const Bytes& bytes) {
  std::uint32_t crc = 0xFFFFFFFFu;
  for (std::uint8_t b : bytes) {
    crc ^= b;
    for (int k = 0; k < 8; ++k) crc = (crc >> 1) ^ (0xEDB88320u & (0u - (crc & 1u)));
  }
  return ~crc;
}

// A zip of stored entries, made byte by byte so that it can lie about sizes.
Bytes StoredZip(const std::vector<std::tuple<std::string, Bytes, std::optional<std::uint32_t>>>& entries) {
  Bytes local, central;
  for (const auto& [name, data, stated] : entries) {
    const auto size = static_cast<std::uint32_t>(data.size());
    const Bytes common = Concat({LE16(20), LE16(0), LE16(0), LE16(0), LE16(0x21), LE32(Crc32(data)), LE32(size),
                                 LE32(stated.value_or(size)), LE16(static_cast<std::uint32_t>(name.size())), LE16(0)});
    const auto offset = static_cast<std::uint32_t>(local.size());
    local = Concat({local, Hex("504B0304"), common, Text(name), data});
    central = Concat({central, Hex("504B0102"), LE16(20), common, LE16(0), LE16(0), LE16(0), LE32(0), LE32(offset),
                      Text(name)});
  }
  const auto count = static_cast<std::uint32_t>(entries.size());
  return Concat({local, central, Hex("504B0506"), LE16(0), LE16(0), LE16(count), LE16(count),
                 LE32(static_cast<std::uint32_t>(central.size())), LE32(static_cast<std::uint32_t>(local.size())), LE16(0)});
}

Bytes Manifest(std::size_t databases) {
  std::string list;
  for (std::size_t i = 1; i <= databases; ++i) list += "<Database uid=\"" + std::to_string(i) + "\"/>";
  return Text("<?xml version=\"1.0\"?><BlackBerry_Backup><NessusOSDevice><Databases>" + list +
              "</Databases></NessusOSDevice></BlackBerry_Backup>");
}

Bytes Memo(const std::string& title) { return RecordBytes(FieldRecord(1, {{1, TextZ(title)}})); }
const Bytes kHeader = IpdBuilder().Database("Handheld Agent").Database("Memos").Build();  // up to the first record
Bytes Backup(const Bytes& records) { return Concat({kHeader, records}); }
Bytes With(Bytes bytes, std::size_t at, const Bytes& patch) {
  std::copy(patch.begin(), patch.end(), bytes.begin() + static_cast<std::ptrdiff_t>(at));
  return bytes;
}
Bytes Cut(const Bytes& bytes, std::size_t length) { return Bytes(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(length)); }

Bytes ManyDatabases(std::uint32_t count) {
  IpdBuilder b;
  for (std::uint32_t i = 0; i + 1 < count; ++i) b.Database("D" + std::to_string(i));
  b.Database("Memos").Add(FieldRecord(static_cast<std::uint16_t>(count - 1), {{1, TextZ("last")}}));
  return With(b.Build(), 40, LE16(count));  // the builder's header holds the count's low byte only
}

struct Case {
  std::string name;  // also the file's name: a .bbb is read as a desktop backup when it is a zip
  Bytes bytes;
  std::vector<std::string> args;  // $F: the file, $D: a scratch folder
  int exitCode;
  std::string words;  // in standard error on 1, else in standard output
  friend void PrintTo(const Case& c, std::ostream* os) { *os << c.name; }
};

class HostileInputs : public ::testing::TestWithParam<Case> {};

TEST_P(HostileInputs, EndWithAStatusAndSayWhy) {
  const Case& c = GetParam();
  TempFolder folder;
  const std::string file = folder.Write(c.name, c.bytes);
  std::vector<std::string> args;
  for (const std::string& a : c.args) args.push_back(a == "$F" ? file : a == "$D" ? folder.File("out") : a);
  const CliRun run = RunCli(args);
  EXPECT_EQ(run.exitCode, c.exitCode) << run.err;
  EXPECT_NE((c.exitCode == 1 ? run.err : run.out).find(c.words), std::string::npos) << run.out << run.err;
  EXPECT_TRUE(c.exitCode != 1 || !FileExists(folder.File("out")));
  if (c.exitCode == 3) {
    EXPECT_EQ(run.err, std::string(kRecords) + "\n");
  }
  EXPECT_EQ(ReadFile(file), c.bytes);
}

const Bytes kSmall = Backup(Concat({Memo("one"), Memo("two")}));
const std::vector<std::string> kTree = {"tree", "$F"};
const Bytes kManifest = Manifest(1);

INSTANTIATE_TEST_SUITE_P(
    Cli, HostileInputs,
    ::testing::Values(
        Case{"empty.ipd", {}, {"export", "$F", "--txt", "--scope", "all"}, 1, kTitles},
        Case{"cut-in-header.ipd", Cut(kSmall, 20), kTree, 1, kTitles},
        Case{"cut-in-names.ipd", Cut(kSmall, kHeader.size() - 3), kTree, 1, kTitles},
        Case{"cut-in-record.ipd", Cut(kSmall, kSmall.size() - 4), kTree, 1, kRecords},
        // --keep-going: the loader's message, then the command on what was read; nothing read, nothing done.
        Case{"cut-keep-going.ipd", Cut(kSmall, kSmall.size() - 4), {"--keep-going", "tree", "$F"}, 3, "\tone\n"},
        Case{"cut-keep-going-split.ipd", Cut(kSmall, kSmall.size() - 4),
             {"--keep-going", "split", "$F", "$D", "--toggle", "Top"}, 3, "File saved as"},
        Case{"empty-keep-going.ipd", {}, {"--keep-going", "tree", "$F"}, 1, kTitles},
        Case{"cut-between-records.ipd", Cut(kSmall, kHeader.size() + Memo("one").size()), kTree, 0, "\tone\n"},
        Case{"length-0.ipd", Backup(Concat({LE16(0), LE32(0)})), kTree, 0, "\tMemos\n"},
        Case{"length-top.ipd", Backup(With(Memo("m"), 2, LE32(0xFFFFFFFF))), kTree, 1, kRecords},
        Case{"name-length-top.ipd", With(Backup(Memo("m")), 42, LE16(0xFFFF)), kTree, 1, kTitles},
        Case{"name-count-top.ipd", With(Backup(Memo("m")), 40, LE16(0xFFFF)), kTree, 1, kTitles},
        Case{"256-databases.ipd", ManyDatabases(256), kTree, 0, "\tlast\n"},
        Case{"256-databases-win.ipd", ManyDatabases(256), {"convert", "$F", "$D", "--to", "bbb-win"}, 1,
             "Error in convertion!!"},
        Case{"256-databases-split.ipd", ManyDatabases(256), {"split", "$F", "$D", "--toggle", "Top"}, 0, "File saved"},
        Case{"ends-at-last-byte.ipd", Backup(Memo("end")), kTree, 0, "\tend\n"},
        Case{"marker-at-end.ipd", Backup(Concat({Memo("end"), MarkerBlock()})), kTree, 1, kRecords},
        Case{"text.bbb", Text("just text"), kTree, 1, kTitles},
        Case{"corrupt.bbb", Concat({Hex("504B0304"), Bytes(60, 0x41)}), kTree, 1, "Cannot open the desktop backup"},
        Case{"zip-slip.bbb", StoredZip({{"Manifest.xml", kManifest, {}}, {"../1.dat", Text("x"), {}}}), kTree, 1,
             "unsafe entry name: ../1.dat"},
        Case{"same-name.bbb", StoredZip({{"Manifest.xml", kManifest, {}}, {"1.dat", Text("x"), {}}, {"1.dat", Text("y"), {}}}),
             kTree, 1, "two entries named"},
        Case{"bomb.bbb", StoredZip({{"Manifest.xml", kManifest, {}}, {"1.dat", Text("x"), 0xFFFFFFF0u}}),
             {"convert", "$F", "$D", "--to", "ipd"}, 1, "unpacks to more than it can hold"},
        Case{"dtd.bbb", StoredZip({{"Manifest.xml", Text("<?xml version=\"1.0\"?><!DOCTYPE b [<!ENTITY e SYSTEM "
                                                         "\"file:///etc/passwd\">]><b>&e;</b>"), {}}}),
             kTree, 1, "declares a document type"},
        Case{"40000-databases.bbb", StoredZip({{"Manifest.xml", Manifest(40000), {}}}), kTree, 1,
             "Manifest.xml lists 40000 databases; at most 32767 can be read"},
        Case{"missing-dat.bbb", StoredZip({{"Manifest.xml", kManifest, {}}}), kTree, 1, "lacks 1.dat"}),
    [](const auto& info) { return std::regex_replace(info.param.name, std::regex("[^A-Za-z0-9]"), "_"); });

}  // namespace
}  // namespace orchidlamp::testing
