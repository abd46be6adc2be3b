#include "convert/desktop_backup_reader.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>

#include "convert/work_folder.h"
#include "core/hex_text.h"
#include "core/ipd_format.h"
#include "support/temp_folder.h"
#include "zip_fixture.h"

namespace orchidlamp {
namespace {

using namespace orchidlamp::testing;

constexpr std::time_t kNow = 1700000000;
std::time_t Now() { return kNow; }
Bytes Rec(std::uint16_t x, std::string_view text, std::uint8_t version = 0) {
  return RecordBytes({x, Body(1, 0x11, Text(text)), version});
}

TEST(WorkFolderTest, NamedByTheClockAndNeverReused) {
  TempFolder root;
  auto first = CreateWorkFolder(root.path(), Now), second = CreateWorkFolder(root.path(), Now);
  const std::string folder = root.path() + "/OL_" + DdHhNnSs(kNow);
  EXPECT_EQ(first->folder + first->ipdPart + first->hPart + first->rPart,
            folder + folder + "/IPD" + folder + "/H" + folder + "/R");
  EXPECT_EQ(second->folder, folder + "_2");
}

// One row per .dat: the records it adds (numbers x become x - 1, marker blocks
// after a record dropped in the order 00 then 01), or "refused" when its
// lengths run past its end; a refused file adds nothing, not even its name.
TEST(AppendDatabaseTest, RenumbersDropsMarkersAndRefusesShortFilesWhole) {
  const Bytes m0 = Hex("FFFF02000000"), m1 = Hex("FFFF02000100"), good = DatFile("Memos", Rec(1, "abc"));
  const std::vector<std::pair<Bytes, std::optional<Bytes>>> rows = {
      {DatFile("Memos", Concat({Rec(1, "one"), Rec(7, "two", 3)})), Concat({Rec(0, "one"), Rec(6, "two", 3)})},
      {DatFile("Memos", Concat({Rec(1, "a"), m1, Rec(1, "b"), m0, m1, Rec(1, "c"), m0})),
       Concat({Rec(0, "a"), Rec(0, "b"), Rec(0, "c")})},
      // A 00 block after a 01 block is read as a record: x = FFFF, length 2.
      {DatFile("Memos", Concat({Rec(1, "a"), m1, m0, Hex("ABCD")})), Concat({Rec(0, "a"), Hex("FEFF02000000ABCD")})},
      {DatFile("Memos", {}), Bytes{}},
      {Bytes(good.begin(), good.end() - 1), std::nullopt},
      {Concat({good, Hex("0100")}), std::nullopt},
      {Bytes(good.begin(), good.begin() + 43), std::nullopt},
      {Concat({Hex(IpdHeaderHex(1)), LE16(40), TextZ("Memos")}), std::nullopt}};
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const auto& [dat, expected] = rows[i];
    DatabaseParts parts{Text("N"), Text("R")};
    const Status s = AppendDatabaseBytes(dat, "4.dat", parts);
    EXPECT_EQ(s.ok(), expected.has_value()) << "row " << i;
    EXPECT_EQ(parts.records, expected ? Concat({Text("R"), *expected}) : Text("R")) << "row " << i;
    EXPECT_EQ(parts.names, expected ? Concat({Text("N"), NameBytes("Memos")}) : Text("N")) << "row " << i;
    if (!s) {
      EXPECT_EQ(s.failure().message.text, "4.dat in the desktop backup is shorter than its lengths state");
    }
  }
}

class ConvertTest : public ::testing::Test {
 protected:
  Result<std::string> Convert(const ZipEntries& entries, const ExtractLimits& limits = {}) {
    WriteZip(input.File("in.bbb"), entries);
    return ConvertDesktopBackup(input.File("in.bbb"), Now, temp.path(), nullptr, limits);
  }
  // The failure's text when it holds `reason` and nothing stays behind; what went wrong otherwise.
  std::string Refused(const ZipEntries& entries, const std::string& reason, const ExtractLimits& limits = {}) {
    auto r = Convert(entries, limits);
    if (r) return "converted";
    if (!std::filesystem::is_empty(temp.path())) return "left " + temp.path();
    return r.failure().message.text.find(reason) == std::string::npos ? r.failure().message.text : "";
  }
  TempFolder input, temp;
};

TEST_F(ConvertTest, WindowsKindRebuildsTheIpdInManifestOrderMacKindIsCopied) {
  auto ipd = Convert({{"Databases/7.dat", DatFile("Tasks", Rec(2, "task"))},
                      {"Databases\\3.dat", DatFile("Memos", Concat({Rec(1, "memo"), Hex("FFFF02000100")}))},
                      // listed third, yet its records carry x = 1: they belong to database 0
                      {"Databases/9.dat", DatFile("Other", Rec(1, "x"))},
                      {"Manifest.xml", ManifestFor({"3", "7", "9"})}});
  ASSERT_TRUE(ipd) << ipd.failure().message.text;
  const std::string folder = temp.path() + "/OL_" + DdHhNnSs(kNow);
  EXPECT_EQ(ipd.value(), folder + "/OL_" + DdHhNnSs(kNow) + ".ipd");
  EXPECT_EQ(ReadFile(ipd.value()), Concat({Hex(IpdHeaderHex(3)), NameBytes("Memos"), NameBytes("Tasks"),
                                           NameBytes("Other"), Rec(0, "memo"), Rec(1, "task"), Rec(0, "x")}));
  // Entries land without their folder names, beside the three parts.
  for (const char* name : {"3.dat", "7.dat", "9.dat", "Manifest.xml", "IPD", "H", "R"})
    EXPECT_TRUE(FileExists(folder + "/" + name)) << name;
  EXPECT_EQ(ReadFile(folder + "/IPD"), Hex(IpdHeaderHex(3)));

  const Bytes inner = IpdBuilder().Database("Memos").Add(FieldRecord(0, {{1, Text("m")}})).Build();
  auto mac = Convert({{"Databases/Databases.ipd", inner}, {"BlackBerry_Backup.xml", MacXml()}});
  EXPECT_EQ(ReadFile(mac.value()), inner);
  // Both XML files: the Windows kind.
  auto both = Convert({{"Databases/Databases.ipd", inner}, {"BlackBerry_Backup.xml", MacXml()},
                       {"1.dat", DatFile("Tasks", {})}, {"Manifest.xml", ManifestFor({"1"})}});
  EXPECT_EQ(ReadFile(both.value()), Concat({Hex(IpdHeaderHex(1)), NameBytes("Tasks")}));
}

TEST_F(ConvertTest, AManifestCountAbove255IsWrittenModulo256) {
  ZipEntries entries;
  std::vector<std::string> uids;
  for (int i = 1; i <= 257; ++i) {
    uids.push_back(std::to_string(i));
    entries.push_back({std::to_string(i) + ".dat", DatFile("D", {})});
  }
  entries.push_back({"Manifest.xml", ManifestFor(uids)});
  const Bytes bytes = ReadFile(Convert(entries).value());
  EXPECT_EQ(Bytes(bytes.begin() + 39, bytes.begin() + 42), Hex("000100"));
  EXPECT_EQ(bytes.size(), 42u + 257u * 4u);
}

TEST_F(ConvertTest, HostileArchivesFailClearlyAndLeaveNothing) {
  const Bytes dat = DatFile("Memos", Rec(1, "abc")), manifest = ManifestFor({"1"});
  ExtractLimits small;
  small.totalFloor = small.entryFloor = 1000;
  small.ratio = 2;
  const auto doc = [](const std::string& dtd, const std::string& body) {
    return Text("<?xml version=\"1.0\"?>" + dtd + "<BlackBerry_Backup>" + body + "</BlackBerry_Backup>");
  };
  Bytes wide = Hex("FFFE");  // UTF-16 with a document type
  for (char c : std::string("<?xml version=\"1.0\"?><!DOCTYPE r [<!ENTITY e \"x\">]><BlackBerry_Backup/>"))
    wide.insert(wide.end(), {static_cast<std::uint8_t>(c), 0});
  const std::string secret = input.Write("secret.txt", Text("classified"));
  const std::vector<std::pair<ZipEntries, std::string>> rows = {
      {{{"1.dat", dat}}, "neither Manifest.xml nor BlackBerry_Backup.xml"},
      {{{"Manifest.xml", ManifestFor({"1", "2"})}, {"1.dat", dat}}, "lacks 2.dat, which Manifest.xml lists"},
      {{{"Manifest.xml", manifest}, {"1.dat", Bytes(dat.begin(), dat.end() - 2)}}, "1.dat in the desktop backup is"},
      {{{"Manifest.xml", manifest}, {"../1.dat", dat}}, "unsafe entry name: ../1.dat"},
      {{{"Manifest.xml", manifest}, {"Databases\\..\\1.dat", dat}}, "unsafe entry name"},
      {{{"Manifest.xml", manifest}, {"/tmp/1.dat", dat}}, "unsafe entry name"},
      {{{"Manifest.xml", manifest}, {"C:1.dat", dat}}, "unsafe entry name"},
      {{{"Manifest.xml", manifest}, {"Databases/..", dat}}, "unsafe entry name"},
      {{{"Manifest.xml", manifest}, {"a/1.dat", dat}, {"b/1.dat", dat}}, "two entries named 1.dat"},
      {{{"Manifest.xml", ManifestFor({"../1"})}, {"1.dat", dat}}, "unsafe database file"},
      {{{"Manifest.xml", doc("", "<NessusOSDevice><Databases><Database>x</Database></Databases></NessusOSDevice>")}},
       "has no uid"},
      {{{"Manifest.xml", ManifestFor(std::vector<std::string>(kMaxManifestDatabases + 1, "1"))}, {"1.dat", dat}},
       "lists 32768 databases; at most 32767 can be read"},
      {{{"Manifest.xml", doc("<!DOCTYPE r [<!ENTITY e SYSTEM \"file://" + secret + "\">]>", "&e;")}},
       "declares a document type"},
      {{{"BlackBerry_Backup.xml", doc("<!DOCTYPE r [<!ENTITY a \"aa\"><!ENTITY b \"&a;&a;\">]>", "&b;")},
        {"Databases.ipd", Text("x")}},
       "declares a document type"},
      {{{"Manifest.xml", wide}}, "is not 8-bit XML text"},
      {{{"Manifest.xml", Text("<BlackBerry_Backup><Databases></BlackBerry_Backup>")}}, "Manifest.xml, line 1"}};
  for (const auto& [entries, reason] : rows) EXPECT_EQ(Refused(entries, reason), "") << reason;
  // An inflate bomb is refused before anything is written; within the limits the same archive converts.
  const ZipEntries bomb = {{"Manifest.xml", ManifestFor({})}, {"big.bin", Bytes(100000, 0)}};
  EXPECT_EQ(Refused(bomb, "unpacks to more than it can hold (big.bin)", small), "");
  EXPECT_TRUE(Convert(bomb));
  std::filesystem::remove_all(temp.path()), std::filesystem::create_directory(temp.path());
  const std::string plain = input.Write("plain.bbb", Text("PK\x03\x04 but nothing more"));
  EXPECT_NE(ConvertDesktopBackup(plain, Now, temp.path()).failure().message.text.find("Not a zip archive"),
            std::string::npos);
  EXPECT_TRUE(std::filesystem::is_empty(temp.path()));
}

}  // namespace
}  // namespace orchidlamp
