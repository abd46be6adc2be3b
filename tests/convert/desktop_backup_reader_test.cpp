#include "convert/desktop_backup_reader.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "convert/work_folder.h"
#include "support/temp_folder.h"
#include "zip_fixture.h"

namespace orchidlamp {
namespace {

using namespace orchidlamp::testing;

constexpr std::time_t kNow = 1700000000;
Clock Pinned() {
  return [] { return kNow; };
}

std::vector<std::string> FolderContents(const std::string& folder) {
  std::vector<std::string> names;
  for (const auto& e : std::filesystem::directory_iterator(folder)) names.push_back(e.path().filename().string());
  return names;
}

Bytes IpdRecord(std::uint16_t db, const Bytes& body, std::uint8_t version = 0) { return DatRecord(db, body, version); }

TEST(WorkFolderTest, NamedByTheClockAndNeverReused) {
  TempFolder root;
  auto first = CreateWorkFolder(root.path(), Pinned());
  auto second = CreateWorkFolder(root.path(), Pinned());
  ASSERT_TRUE(first.ok() && second.ok());
  EXPECT_EQ(first->folder, root.path() + "/OL_" + DdHhNnSs(kNow));
  EXPECT_EQ(first->ipdPart, first->folder + "/IPD");
  EXPECT_EQ(first->hPart, first->folder + "/H");
  EXPECT_EQ(first->rPart, first->folder + "/R");
  EXPECT_EQ(second->folder, first->folder + "_2");
}

// ---- .dat files ----

TEST(AppendDatabaseTest, NameEntryUnchangedAndDatabaseNumbersShiftedDown) {
  const Bytes a = Body(1, 0x11, Text("one")), b = Body(2, 0x22, Text("second"));
  const Bytes dat = DatFile("Memos", Concat({DatRecord(1, a), DatRecord(7, b, 3)}));
  DatabaseParts parts;
  ASSERT_TRUE(AppendDatabaseBytes(dat, "1.dat", parts).ok());
  EXPECT_EQ(parts.names, Concat({LE16(6), TextZ("Memos")}));
  EXPECT_EQ(parts.records, Concat({IpdRecord(0, a), IpdRecord(6, b, 3)}));
}

TEST(AppendDatabaseTest, MarkerBlocksAfterARecordAreDroppedInTheirOrderOnly) {
  const Bytes a = Body(1, 0x11, Text("a")), b = Body(2, 0x22, Text("b"));
  const Bytes m0 = Hex("FFFF02000000"), m1 = Hex("FFFF02000100");
  DatabaseParts parts;
  // 01 alone, then 00 followed by 01: all dropped.
  ASSERT_TRUE(AppendDatabaseBytes(DatFile("T", Concat({DatRecord(1, a), m1, DatRecord(1, b), m0, m1, DatRecord(1, a)})),
                                  "1.dat", parts)
                  .ok());
  EXPECT_EQ(parts.records, Concat({IpdRecord(0, a), IpdRecord(0, b), IpdRecord(0, a)}));

  // A 00 block after a 01 block is read as a record: x = FFFF, length 2.
  DatabaseParts odd;
  ASSERT_TRUE(AppendDatabaseBytes(DatFile("T", Concat({DatRecord(1, a), m1, m0, Hex("ABCD")})), "1.dat", odd).ok());
  EXPECT_EQ(odd.records, Concat({IpdRecord(0, a), Hex("FEFF02000000ABCD")}));
}

TEST(AppendDatabaseTest, NameWithoutRecordsAddsOnlyTheName) {
  DatabaseParts parts;
  ASSERT_TRUE(AppendDatabaseBytes(DatFile("Tasks", {}), "2.dat", parts).ok());
  EXPECT_EQ(parts.names, Concat({LE16(6), TextZ("Tasks")}));
  EXPECT_TRUE(parts.records.empty());
}

TEST(AppendDatabaseTest, ShortFilesAreRefusedWholeAndNamed) {
  const Bytes good = DatFile("Memos", DatRecord(1, Body(1, 2, Text("abc"))));
  const std::vector<Bytes> cases = {
      Bytes(good.begin(), good.end() - 1),  // last record one byte short
      Concat({good, Hex("0100")}),          // a record header cut off
      Bytes(good.begin(), good.begin() + 43),
      Concat({HexToBytes(IpdHeaderHex(1)), LE16(40), TextZ("Memos")}),  // name longer than the file
  };
  for (const Bytes& dat : cases) {
    DatabaseParts parts;
    Status s = AppendDatabaseBytes(dat, "4.dat", parts);
    ASSERT_FALSE(s.ok());
    EXPECT_NE(s.failure().message.text.find("4.dat"), std::string::npos);
    EXPECT_TRUE(parts.names.empty() && parts.records.empty());
  }
}

// ---- whole archives ----

class ConvertTest : public ::testing::Test {
 protected:
  Result<std::string> Convert(const ZipEntries& entries, const ExtractLimits& limits = {}) {
    WriteZip(input.File("in.bbb"), entries);
    return ConvertDesktopBackup(input.File("in.bbb"), Pinned(), temp.path(), nullptr, limits);
  }
  std::string Expect(const ZipEntries& entries, const std::string& reasonPart) {
    auto r = Convert(entries);
    if (r.ok()) return "converted although it should not";
    // Nothing half-written stays behind: the work folder goes with the failure.
    EXPECT_TRUE(FolderContents(temp.path()).empty());
    const std::string& text = r.failure().message.text;
    return text.find(reasonPart) != std::string::npos ? "" : text;
  }

  TempFolder input, temp;
};

TEST_F(ConvertTest, WindowsKindRebuildsTheIpdInManifestOrder) {
  const Bytes memo = Body(1, 0x11, Text("memo")), task = Body(2, 0x22, Text("task")), x = Body(3, 0x33, Text("x"));
  auto ipd = Convert({{"Databases/7.dat", DatFile("Tasks", DatRecord(2, task))},
                      {"Databases\\3.dat", DatFile("Memos", Concat({DatRecord(1, memo), Hex("FFFF02000100")}))},
                      // listed third, yet its records carry x = 1: they belong to database 0
                      {"Databases/9.dat", DatFile("Other", DatRecord(1, x))},
                      {"Manifest.xml", ManifestFor({"3", "7", "9"})}});
  ASSERT_TRUE(ipd.ok()) << ipd.failure().message.text;
  const std::string folder = temp.path() + "/OL_" + DdHhNnSs(kNow);
  EXPECT_EQ(ipd.value(), folder + "/OL_" + DdHhNnSs(kNow) + ".ipd");
  const Bytes expected = Concat({HexToBytes(IpdHeaderHex(3)), LE16(6), TextZ("Memos"), LE16(6), TextZ("Tasks"), LE16(6),
                                 TextZ("Other"), IpdRecord(0, memo), IpdRecord(1, task), IpdRecord(0, x)});
  EXPECT_EQ(ReadFile(ipd.value()), expected);
  // Entries land without their folder names, beside the three parts.
  for (const char* name : {"3.dat", "7.dat", "9.dat", "Manifest.xml", "IPD", "H", "R"})
    EXPECT_TRUE(FileExists(folder + "/" + name)) << name;
  EXPECT_EQ(ReadFile(folder + "/IPD"), HexToBytes(IpdHeaderHex(3)));
}

TEST_F(ConvertTest, MacKindCopiesDatabasesIpdAndBothXmlFilesMeanWindows) {
  const Bytes inner = IpdBuilder().Database("Memos").Add(FieldRecord(0, {{1, Text("m")}})).Build();
  auto mac = Convert({{"Databases/Databases.ipd", inner}, {"BlackBerry_Backup.xml", MacXml()}});
  ASSERT_TRUE(mac.ok()) << mac.failure().message.text;
  EXPECT_EQ(ReadFile(mac.value()), inner);

  auto both = Convert({{"Databases/Databases.ipd", inner},
                       {"BlackBerry_Backup.xml", MacXml()},
                       {"1.dat", DatFile("Tasks", {})},
                       {"Manifest.xml", ManifestFor({"1"})}});
  ASSERT_TRUE(both.ok()) << both.failure().message.text;
  EXPECT_EQ(ReadFile(both.value()), Concat({HexToBytes(IpdHeaderHex(1)), LE16(6), TextZ("Tasks")}));
}

TEST_F(ConvertTest, ManifestCountAbove255IsWrittenModulo256) {
  ZipEntries entries;
  std::vector<std::string> uids;
  for (int i = 1; i <= 257; ++i) {
    uids.push_back(std::to_string(i));
    entries.push_back({std::to_string(i) + ".dat", DatFile("D", {})});
  }
  entries.push_back({"Manifest.xml", ManifestFor(uids)});
  auto ipd = Convert(entries);
  ASSERT_TRUE(ipd.ok()) << ipd.failure().message.text;
  const Bytes bytes = ReadFile(ipd.value());
  EXPECT_EQ(bytes[39], 0x00);
  EXPECT_EQ(bytes[40], 0x01);
  EXPECT_EQ(bytes[41], 0x00);
  EXPECT_EQ(bytes.size(), 42u + 257u * 4u);
}

TEST_F(ConvertTest, HostileArchivesFailClearlyAndLeaveNothing) {
  const Bytes dat = DatFile("Memos", DatRecord(1, Body(1, 2, Text("abc"))));
  const Bytes manifest = ManifestFor({"1"});
  EXPECT_EQ(Expect({{"1.dat", dat}}, "neither Manifest.xml nor BlackBerry_Backup.xml"), "");
  EXPECT_EQ(Expect({{"Manifest.xml", ManifestFor({"1", "2"})}, {"1.dat", dat}}, "lacks 2.dat"), "");
  EXPECT_EQ(Expect({{"Manifest.xml", manifest}, {"1.dat", Bytes(dat.begin(), dat.end() - 2)}}, "1.dat in the desktop backup is shorter"), "");
  EXPECT_EQ(Expect({{"Manifest.xml", manifest}, {"../1.dat", dat}}, "unsafe entry name: ../1.dat"), "");
  EXPECT_EQ(Expect({{"Manifest.xml", manifest}, {"Databases\\..\\1.dat", dat}}, "unsafe entry name"), "");
  EXPECT_EQ(Expect({{"Manifest.xml", manifest}, {"/tmp/1.dat", dat}}, "unsafe entry name"), "");
  EXPECT_EQ(Expect({{"Manifest.xml", manifest}, {"C:1.dat", dat}}, "unsafe entry name"), "");
  EXPECT_EQ(Expect({{"Manifest.xml", manifest}, {"Databases/..", dat}}, "unsafe entry name"), "");
  EXPECT_EQ(Expect({{"Manifest.xml", manifest}, {"a/1.dat", dat}, {"b/1.dat", dat}}, "two entries named 1.dat"), "");
  EXPECT_EQ(Expect({{"Manifest.xml", ManifestFor({"../1"})}, {"1.dat", dat}}, "unsafe database file"), "");
  EXPECT_EQ(Expect({{"Manifest.xml", Text("<?xml version=\"1.0\"?><BlackBerry_Backup><NessusOSDevice><Databases>"
                                          "<Database>x</Database></Databases></NessusOSDevice></BlackBerry_Backup>")}},
                   "has no uid"),
            "");
}

TEST_F(ConvertTest, DocumentTypesAndEntitiesAreNeverLoaded) {
  const std::string secret = input.Write("secret.txt", Text("classified"));
  const Bytes external = Text("<?xml version=\"1.0\"?><!DOCTYPE r [<!ENTITY e SYSTEM \"file://" + secret +
                              "\">]><BlackBerry_Backup><NessusOSDevice><Databases><Database uid=\"&e;\"/>"
                              "</Databases></NessusOSDevice></BlackBerry_Backup>");
  EXPECT_EQ(Expect({{"Manifest.xml", external}}, "declares a document type"), "");
  const Bytes laughs = Text("<?xml version=\"1.0\"?><!DOCTYPE r [<!ENTITY a \"aaaaaaaaaa\"><!ENTITY b \"&a;&a;&a;\">]>"
                            "<BlackBerry_Backup>&b;</BlackBerry_Backup>");
  Bytes wide = Hex("FFFE");
  for (char c : std::string("<?xml version=\"1.0\"?><!DOCTYPE r [<!ENTITY e \"x\">]><BlackBerry_Backup/>")) {
    wide.push_back(static_cast<std::uint8_t>(c));
    wide.push_back(0);
  }
  EXPECT_EQ(Expect({{"Manifest.xml", wide}}, "is not 8-bit XML text"), "");
  EXPECT_EQ(Expect({{"BlackBerry_Backup.xml", laughs}, {"Databases.ipd", Text("x")}}, "declares a document type"), "");
}

TEST_F(ConvertTest, UnparsableXmlGivesTheParsersReason) {
  auto r = Convert({{"Manifest.xml", Text("<BlackBerry_Backup><Databases></BlackBerry_Backup>")}});
  ASSERT_FALSE(r.ok());
  EXPECT_NE(r.failure().message.text.find("Manifest.xml, line 1"), std::string::npos) << r.failure().message.text;
}

TEST_F(ConvertTest, InflateBombsAreRefusedBeforeAnythingIsWritten) {
  ExtractLimits small;
  small.totalFloor = small.entryFloor = 1000;
  small.ratio = 2;
  const Bytes zeros(100000, 0);
  auto r = Convert({{"Manifest.xml", ManifestFor({})}, {"big.bin", zeros}}, small);
  ASSERT_FALSE(r.ok());
  EXPECT_NE(r.failure().message.text.find("unpacks to more than it can hold (big.bin)"), std::string::npos);
  EXPECT_TRUE(FolderContents(temp.path()).empty());
  // Within the limits the same archive converts.
  ASSERT_TRUE(Convert({{"Manifest.xml", ManifestFor({})}, {"big.bin", zeros}}).ok());
}

TEST_F(ConvertTest, TooManyDatabasesInAManifestAreRefused) {
  std::vector<std::string> uids(kMaxManifestDatabases + 1, "1");
  EXPECT_EQ(Expect({{"Manifest.xml", ManifestFor(uids)}, {"1.dat", DatFile("D", {})}}, "lists 32768 databases"), "");
}

TEST_F(ConvertTest, NotAZipIsRefused) {
  const std::string path = input.Write("plain.bbb", Text("PK\x03\x04 but nothing more"));
  auto r = ConvertDesktopBackup(path, Pinned(), temp.path());
  ASSERT_FALSE(r.ok());
  EXPECT_NE(r.failure().message.text.find("Not a zip archive"), std::string::npos) << r.failure().message.text;
  EXPECT_TRUE(FolderContents(temp.path()).empty());
}

}  // namespace
}  // namespace orchidlamp
