#include "convert/desktop_backup_writer.h"

#include <gtest/gtest.h>
#include <zip.h>

#include <algorithm>
#include <filesystem>

#include "convert/desktop_backup_reader.h"
#include "convert/zip_archive.h"
#include "records/record_kinds.h"
#include "support/temp_folder.h"
#include "zip_fixture.h"

namespace orchidlamp {
namespace {

using namespace orchidlamp::testing;

constexpr std::time_t kNow = 1700000000;
Clock Pinned() {
  return [] { return kNow; };
}

TEST(BackupXmlTest, ManifestIsOneLineWithTheFixedHeadAndRawNames) {
  const std::string xml = ManifestXml({{"Memos", 2}, {"A&B<C", 0}});
  EXPECT_EQ(xml,
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?><BlackBerry_Backup><Version>2.0</Version><Client "
            "platform=\"windows\" osversion=\"Microsoft Windows NT 6.1.7600.0\" dtmversion=\"7.0.0.32\" "
            "/><SourceDevice pin=\"40404040\" hwid=\"5001807\"><Platform type=\"BlackBerry\" version=\"6.4.0.120\" "
            "/></SourceDevice><NessusOSDevice><Databases><Database uid=\"1\" recordcount=\"2\">Memos</Database>"
            "<Database uid=\"2\" recordcount=\"0\">A&B<C</Database></Databases></NessusOSDevice></BlackBerry_Backup>"
            "\r\n");
}

TEST(BackupXmlTest, MacXmlHasAnEmptySaltAndCounts) {
  EXPECT_EQ(MacBackupXml({{"SMS Messages", 12}}),
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?><BlackBerry_Backup><Version>1.0</Version><Platform>Mac"
            "</Platform><Encryption><salt></salt></Encryption><Databases><Database count=\"12\">SMS Messages"
            "</Database></Databases></BlackBerry_Backup>\r\n");
  EXPECT_EQ(MacBackupXml({}),
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?><BlackBerry_Backup><Version>1.0</Version><Platform>Mac"
            "</Platform><Encryption><salt></salt></Encryption><Databases></Databases></BlackBerry_Backup>\r\n");
}

TEST(SummarizeForSaveTest, DatFilesRenumberRecordsAndDropMarkers) {
  const Record memo = FieldRecord(1, {{1, Text("memo")}}, 5, 0x55);
  const Record task = FieldRecord(0, {{2, Text("task")}}, 6, 0x66);
  const Bytes ipd = IpdBuilder()
                        .Database("Tasks")
                        .Database("Me\r\nmos\x01")
                        .Database("Empty")
                        .Add(memo)
                        .Raw(Hex("FFFF02000100"))
                        .Add(task)
                        .Raw(Hex("FFFF02000000"))
                        .Raw(Hex("FFFF02000100"))
                        .Add(memo)
                        .Build();
  std::vector<Bytes> dats;
  auto summaries = SummarizeForSave(ipd, &dats);
  ASSERT_TRUE(summaries.ok()) << summaries.failure().message.text;
  ASSERT_EQ(summaries->size(), 3u);
  EXPECT_EQ(summaries.value()[0].name, "Tasks");
  EXPECT_EQ(summaries.value()[1].name, "Memos");
  EXPECT_EQ(summaries.value()[0].recordCount, 1u);
  EXPECT_EQ(summaries.value()[1].recordCount, 2u);
  EXPECT_EQ(summaries.value()[2].recordCount, 0u);

  const Bytes header = HexToBytes(IpdHeaderHex(1));
  auto asDat = [](const Record& r, std::uint16_t k) {
    Bytes b = RecordBytes(r);
    b[0] = static_cast<std::uint8_t>(k);
    b[1] = 0;
    return b;
  };
  EXPECT_EQ(dats[0], Concat({header, LE16(6), TextZ("Tasks"), asDat(task, 1)}));
  EXPECT_EQ(dats[1], Concat({header, LE16(9), TextZ("Me\r\nmos\x01"), asDat(memo, 2), asDat(memo, 2)}));
  EXPECT_EQ(dats[2], Concat({header, LE16(6), TextZ("Empty")}));

  // Reading a .dat back gives the records in their IPD form again.
  DatabaseParts parts;
  ASSERT_TRUE(AppendDatabaseBytes(dats[1], "2.dat", parts).ok());
  EXPECT_EQ(parts.records, Concat({RecordBytes(memo), RecordBytes(memo)}));
}

TEST(SummarizeForSaveTest, RecordsOfUnlistedDatabasesOrRunningPastTheEndFail) {
  EXPECT_FALSE(SummarizeForSave(IpdBuilder().Database("A").Add(FieldRecord(1, {})).Build(), nullptr).ok());
  Bytes cut = IpdBuilder().Database("A").Add(FieldRecord(0, {{1, Text("abc")}})).Build();
  cut.pop_back();
  EXPECT_FALSE(SummarizeForSave(cut, nullptr).ok());
}

class SaveTest : public ::testing::Test {
 protected:
  SaveTest() {
    ipd = IpdBuilder()
              .Database("Handheld Agent")
              .Database("Memos")
              .Database("Tasks")
              .Add(memo1)
              .Add(task)
              .Raw(Hex("FFFF02000100"))
              .Add(memo2)
              .Add(agent)
              .Build();
    ipdPath = files.Write("open.ipd", ipd);
  }
  Result<Message> Save(SaveKind kind, const std::string& target) {
    return SaveBackupAs(ipdPath, target, kind, Pinned(), temp.path());
  }
  std::vector<std::string> Entries(const std::string& archive) {
    auto names = ListArchive(archive);
    return names.ok() ? names.value() : std::vector<std::string>{"unreadable"};
  }
  // What the loader makes of a file: every node (depth, key, image, text) and
  // every record's body bytes.
  std::vector<std::string> Loaded(const std::string& path) {
    Workspace ws(labeller);
    Status s = ws.Load(path, StoredSettings{});
    EXPECT_TRUE(s.ok());
    std::vector<std::string> lines;
    ws.tree().ForEachDepthFirst([&](NodeId id, int depth) {
      if (depth == 0) return;
      const TreeNode& n = ws.tree()[id];
      std::string line = std::to_string(depth) + "|" + n.key + "|" + std::string(ImageKeyText(n.image)) + "|" + n.text;
      if (n.tag) line += "|" + BytesToHex(ws.Body(*n.tag));
      lines.push_back(line);
    });
    return lines;
  }

  const Record memo1 = FieldRecord(1, {{1, Text("first memo")}, {2, Text("body")}}, 1, 10);
  const Record task = FieldRecord(2, {{2, Text("a task")}}, 2, 20);
  const Record memo2 = FieldRecord(1, {{1, Text("second memo")}}, 3, 30);
  const Record agent = FieldRecord(0, {{9, Text("agent")}}, 4, 40);
  KindLabeller labeller;
  TempFolder files, temp;
  Bytes ipd;
  std::string ipdPath;
};

TEST_F(SaveTest, WindowsBackupRoundTripsAndHoldsTheEntriesInOrder) {
  const std::string target = files.File("out.bbb");
  auto saved = Save(SaveKind::WindowsBbb, target);
  ASSERT_TRUE(saved.ok()) << saved.failure().message.text;
  EXPECT_EQ(saved->text, "File saved successfully in " + target);
  EXPECT_EQ(Entries(target),
            (std::vector<std::string>{"Databases/1.dat", "Databases/2.dat", "Databases/3.dat", "Manifest.xml"}));

  auto back = ConvertDesktopBackup(target, Pinned(), temp.path());
  ASSERT_TRUE(back.ok()) << back.failure().message.text;
  EXPECT_EQ(Loaded(back.value()), Loaded(ipdPath));
  // The rebuilt file holds each database's records together, in manifest
  // order, without the marker.
  EXPECT_EQ(ReadFile(back.value()),
            Concat({HexToBytes(IpdHeaderHex(3)), LE16(15), TextZ("Handheld Agent"), LE16(6), TextZ("Memos"), LE16(6),
                    TextZ("Tasks"), RecordBytes(agent), RecordBytes(memo1), RecordBytes(memo2), RecordBytes(task)}));
}

TEST_F(SaveTest, WindowsArchiveIsDeflatedAndHoldsTheManifest) {
  const std::string target = files.File("out.bbb");
  ASSERT_TRUE(Save(SaveKind::WindowsBbb, target).ok());
  int code = 0;
  zip_t* za = zip_open(target.c_str(), ZIP_RDONLY, &code);
  ASSERT_NE(za, nullptr);
  zip_stat_t st;
  ASSERT_EQ(zip_stat(za, "Manifest.xml", 0, &st), 0);
  EXPECT_EQ(st.comp_method, ZIP_CM_DEFLATE);
  std::string manifest(st.size, '\0');
  zip_file_t* f = zip_fopen(za, "Manifest.xml", 0);
  ASSERT_NE(f, nullptr);
  EXPECT_EQ(zip_fread(f, manifest.data(), manifest.size()), static_cast<zip_int64_t>(manifest.size()));
  zip_fclose(f);
  zip_discard(za);
  EXPECT_EQ(manifest, ManifestXml({{"Handheld Agent", 1}, {"Memos", 2}, {"Tasks", 1}}));
}

TEST_F(SaveTest, MacBackupRoundTripsByteForByte) {
  const std::string target = files.File("mac.bbb");
  auto saved = Save(SaveKind::MacBbb, target);
  ASSERT_TRUE(saved.ok()) << saved.failure().message.text;
  EXPECT_EQ(Entries(target), (std::vector<std::string>{"Databases/Databases.ipd", "BlackBerry_Backup.xml"}));
  auto back = ConvertDesktopBackup(target, Pinned(), temp.path());
  ASSERT_TRUE(back.ok()) << back.failure().message.text;
  EXPECT_EQ(ReadFile(back.value()), ipd);
  EXPECT_EQ(Loaded(back.value()), Loaded(ipdPath));
}

TEST_F(SaveTest, IpdCopyIsByteForByteAndReplacesATarget) {
  const std::string target = files.Write("copy.ipd", Bytes(5000, 0xAA));
  ASSERT_TRUE(Save(SaveKind::Ipd, target).ok());
  EXPECT_EQ(ReadFile(target), ipd);
}

TEST_F(SaveTest, FailuresSayErrorInConvertionAndLeaveTheTargetAlone) {
  Bytes broken = ipd;
  broken.pop_back();
  ipdPath = files.Write("broken.ipd", broken);
  const std::string existing = files.Write("keep.bbb", Text("old"));
  for (SaveKind kind : {SaveKind::WindowsBbb, SaveKind::MacBbb}) {
    auto saved = Save(kind, existing);
    ASSERT_FALSE(saved.ok());
    EXPECT_EQ(saved.failure().message.text, "Error in convertion!!");
    EXPECT_EQ(ReadFile(existing), Text("old"));
    EXPECT_FALSE(Save(kind, files.File("new.bbb")).ok());
    EXPECT_FALSE(FileExists(files.File("new.bbb")));
  }
  ipdPath = files.File("missing.ipd");
  EXPECT_FALSE(Save(SaveKind::Ipd, files.File("new.ipd")).ok());
  EXPECT_FALSE(FileExists(files.File("new.ipd")));
  // The work folders are cleaned up either way.
  EXPECT_TRUE(std::filesystem::is_empty(temp.path()));
}

TEST_F(SaveTest, MoreThan250DatabasesDoNotFitAWindowsBackup) {
  IpdBuilder builder;
  for (int i = 0; i < 251; ++i) builder.Database("D" + std::to_string(i));
  ipdPath = files.Write("many.ipd", builder.Build());
  EXPECT_FALSE(Save(SaveKind::WindowsBbb, files.File("many.bbb")).ok());
  EXPECT_TRUE(Save(SaveKind::MacBbb, files.File("many.bbb")).ok());
}

}  // namespace
}  // namespace orchidlamp
