#include "convert/desktop_backup_writer.h"

#include <gtest/gtest.h>
#include <zip.h>

#include <filesystem>

#include "convert/desktop_backup_reader.h"
#include "convert/zip_archive.h"
#include "core/hex_text.h"
#include "core/ipd_format.h"
#include "support/ipd_builder.h"
#include "support/temp_folder.h"

namespace orchidlamp {
namespace {

using namespace orchidlamp::testing;

std::string DataFile(const std::string& name) {
  const Bytes bytes = ReadFile(std::string(ORCHIDLAMP_TEST_DATA) + "/" + name);
  return {bytes.begin(), bytes.end()};
}

TEST(BackupXmlTest, OneLineEachWithTheFixedHeadRawNamesAndCrLf) {
  EXPECT_EQ(ManifestXml({{"Memos", 2}, {"A&B<C", 0}}), DataFile("windows_manifest.xml"));
  EXPECT_EQ(MacBackupXml({{"SMS Messages", 12}}), DataFile("mac_backup.xml"));
}

// The k of a .dat record is its database's index + 1.
Bytes AsDat(const Record& r, std::uint16_t k) { return RecordBytes({k, r.body, r.version}); }

TEST(SummarizeForSaveTest, CountsAndDatsWithTheRawNameRenumberedWithoutMarkers) {
  const Record memo = FieldRecord(1, {{1, Text("memo")}}, 5, 0x55), task = FieldRecord(0, {{2, Text("task")}}, 6);
  const Bytes m0 = Hex("FFFF02000000"), m1 = Hex("FFFF02000100");
  IpdBuilder b;
  b.Database("Tasks").Database("Me\r\nmos\x01").Database("Empty");
  b.Add(memo).Raw(m1).Add(task).Raw(m0).Raw(m1).Add(memo);
  std::vector<Bytes> dats;
  auto summaries = SummarizeForSave(b.Build(), &dats);
  ASSERT_TRUE(summaries) << summaries.failure().message.text;
  std::vector<std::string> counts;  // the names cleaned of every character below 32
  for (const DatabaseSummary& s : summaries.value()) counts.push_back(s.name + "=" + std::to_string(s.recordCount));
  EXPECT_EQ(counts, (std::vector<std::string>{"Tasks=1", "Memos=2", "Empty=0"}));
  const Bytes header = Hex(IpdHeaderHex(1));
  EXPECT_EQ(dats, (std::vector<Bytes>{Concat({header, NameBytes("Tasks"), AsDat(task, 1)}),
                                      Concat({header, NameBytes("Me\r\nmos\x01"), AsDat(memo, 2), AsDat(memo, 2)}),
                                      Concat({header, NameBytes("Empty")})}));
  // The loader passes over a record of a database the name table does not list; the writer cannot.
  const Bytes unlisted = IpdBuilder().Database("A").Add(FieldRecord(1, {})).Build();
  EXPECT_EQ(SummarizeForSave(unlisted, nullptr).failure().message.text,
            "A record at offset 46 belongs to database 1, which the name table does not list");
  const Bytes whole = b.Build();
  EXPECT_EQ(SummarizeForSave(Bytes(whole.begin(), whole.end() - 1), nullptr).failure().message.text, kFileRecordsError);
}

class SaveTest : public ::testing::Test {
 protected:
  SaveTest() {
    IpdBuilder b;
    b.Database("Handheld Agent").Database("Memos").Database("Tasks");
    ipd = b.Add(memo1).Add(task).Raw(Hex("FFFF02000100")).Add(memo2).Add(agent).Build();
    ipdPath = files.Write("open.ipd", ipd);
  }
  Result<Message> Save(SaveKind kind, const std::string& target) {
    return SaveBackupAs(ipdPath, target, kind, [] { return std::time_t{1700000000}; }, temp.path());
  }
  Bytes Back(const std::string& bbb) {
    auto back = ConvertDesktopBackup(bbb, [] { return std::time_t{1700000000}; }, temp.path());
    return back ? ReadFile(back.value()) : Text(back.failure().message.text);
  }

  const Record memo1 = FieldRecord(1, {{1, Text("first memo")}}, 1), task = FieldRecord(2, {{2, Text("a task")}}, 2);
  const Record memo2 = FieldRecord(1, {{1, Text("second memo")}}, 3, 30), agent = FieldRecord(0, {{9, Text("a")}}, 4);
  TempFolder files, temp;
  Bytes ipd;
  std::string ipdPath;
};

TEST_F(SaveTest, WindowsBackupHoldsItsEntriesInOrderDeflatedAndReadsBackRegrouped) {
  const std::string target = files.File("out.bbb");
  EXPECT_EQ(Save(SaveKind::WindowsBbb, target)->text, "File saved successfully in " + target);
  EXPECT_EQ(ListArchive(target).value(),
            (std::vector<std::string>{"Databases/1.dat", "Databases/2.dat", "Databases/3.dat", "Manifest.xml"}));
  int code = 0;
  zip_t* za = zip_open(target.c_str(), ZIP_RDONLY, &code);
  ASSERT_NE(za, nullptr);
  zip_stat_t st;
  ASSERT_EQ(zip_stat(za, "Manifest.xml", 0, &st), 0);
  EXPECT_EQ(st.comp_method, ZIP_CM_DEFLATE);
  zip_discard(za);
  EXPECT_EQ(ReadFile(target)[6] & 6, 2);  // level 9: the first entry's flags say maximum compression
  // Each database's records together, in manifest order, without the marker.
  EXPECT_EQ(Back(target), Concat({Hex(IpdHeaderHex(3)), NameBytes("Handheld Agent"), NameBytes("Memos"),
                                  NameBytes("Tasks"), RecordBytes(agent), RecordBytes(memo1), RecordBytes(memo2),
                                  RecordBytes(task)}));
}

TEST_F(SaveTest, MacBackupAndIpdCopyAreByteForByte) {
  const std::string mac = files.File("mac.bbb"), copy = files.Write("copy.ipd", Bytes(5000, 0xAA));
  ASSERT_TRUE(Save(SaveKind::MacBbb, mac));
  EXPECT_EQ(ListArchive(mac).value(), (std::vector<std::string>{"Databases/Databases.ipd", "BlackBerry_Backup.xml"}));
  EXPECT_EQ(Back(mac), ipd);
  ASSERT_TRUE(Save(SaveKind::Ipd, copy));
  EXPECT_EQ(ReadFile(copy), ipd);
}

TEST_F(SaveTest, FailuresSayErrorInConvertionAndLeaveTheTargetAlone) {
  ipdPath = files.Write("broken.ipd", Bytes(ipd.begin(), ipd.end() - 1));
  const std::string existing = files.Write("keep.bbb", Text("old"));
  for (SaveKind kind : {SaveKind::WindowsBbb, SaveKind::MacBbb}) {
    EXPECT_EQ(Save(kind, existing).failure().message.text, "Error in convertion!!");
    EXPECT_EQ(ReadFile(existing), Text("old"));
    EXPECT_FALSE(Save(kind, files.File("new.bbb")));
    EXPECT_FALSE(FileExists(files.File("new.bbb")));
  }
  ipdPath = files.File("missing.ipd");
  EXPECT_FALSE(Save(SaveKind::Ipd, files.File("new.ipd")));
  EXPECT_FALSE(FileExists(files.File("new.ipd")));
  EXPECT_TRUE(std::filesystem::is_empty(temp.path()));  // the work folders go either way

  IpdBuilder many;  // the Windows kind holds 250 databases
  for (int i = 0; i < 251; ++i) many.Database("D" + std::to_string(i));
  ipdPath = files.Write("many.ipd", many.Build());
  EXPECT_FALSE(Save(SaveKind::WindowsBbb, files.File("many.bbb")));
  EXPECT_TRUE(Save(SaveKind::MacBbb, files.File("many.bbb")));
}

}  // namespace
}  // namespace orchidlamp
