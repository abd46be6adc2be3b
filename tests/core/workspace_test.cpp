#include "core/workspace.h"

#include <gtest/gtest.h>

#include <random>

#include "core/ipd_format.h"
#include "records/record_kinds.h"
#include "support/ipd_builder.h"
#include "support/temp_folder.h"

namespace orchidlamp {
namespace {

using namespace orchidlamp::testing;

class LoadTest : public ::testing::Test {
 protected:
  Status LoadBytes(const Bytes& bytes) { return ws.Load(folder.Write("b.ipd", bytes), StoredSettings{}); }
  std::vector<std::string> Children(NodeId id) const {
    std::vector<std::string> out;
    ws.tree().ForEachChild(id, [&](NodeId c) { out.push_back(ws.tree()[c].text); });
    return out;
  }
  NodeId Db(int index) const { return ws.tree().FindByKey(std::to_string(index) + "DBTop"); }

  KindLabeller labeller;
  Workspace ws{labeller};
  TempFolder folder;
};

Record Memo(std::uint16_t db, std::string title) { return FieldRecord(db, {{1, Text(title)}}); }
Record Task(std::uint16_t db, std::string title) { return FieldRecord(db, {{2, Text(title)}}); }

// Database 0 of a file without bookmarks is read as bookmarks (see the test
// below), so the fixtures put a database of no known kind first.
constexpr const char* kFiller = "Handheld Agent";

TEST_F(LoadTest, FreshWorkspaceShowsTheEmptyRootAndHint) {
  ASSERT_EQ(ws.tree().size(), 1u);
  EXPECT_EQ(ws.tree()[0].key, "Top");
  EXPECT_EQ(ws.tree()[0].text, "IPD Databases");
  EXPECT_EQ(ws.tree()[0].image, ImageKey::sheet);
  EXPECT_EQ(ws.status().main, "Please open IPD file from File menu");
  EXPECT_EQ(ws.Caption(), "Orchidlamp IPD Reader");
}

TEST_F(LoadTest, BuildsRootDatabasesAndRecordsInCollectionOrder) {
  IpdBuilder b;
  b.Database(kFiller).Database("Memos").Database("Tasks");
  b.Add(Memo(1, "first")).Add(Task(2, "do it")).Add(Memo(1, "second"));
  ASSERT_TRUE(LoadBytes(b.Build()));
  const DatabaseTree& t = ws.tree();
  ASSERT_EQ(t.size(), 7u);  // root, 3 databases, 3 known records
  EXPECT_EQ(t[0].text, folder.File("b.ipd"));
  EXPECT_EQ(t[1].key, "0DBTop");
  EXPECT_EQ(t[1].text, kFiller);
  EXPECT_EQ(t[2].key, "1DBTop");
  EXPECT_TRUE(Children(Db(0)).empty());
  EXPECT_EQ(Children(Db(1)), (std::vector<std::string>{"first", "second"}));
  EXPECT_EQ(Children(Db(2)), (std::vector<std::string>{"do it"}));
  // Record nodes follow all database nodes, in file order.
  EXPECT_EQ(t[4].TagText(), b.SpanOf(0));
  EXPECT_EQ(t[4].image, ImageKey::memos);
  EXPECT_EQ(t[5].image, ImageKey::tasks);
  EXPECT_EQ(ws.status().main, "b.ipd");
  EXPECT_EQ(ws.status().details,
            "0 SMS Messages, 0 Address Book (All), 1 Tasks, 2 Memos, 0 Calendar, 0 Phone Calls, 0 Service Book");
  EXPECT_TRUE(ws.menus().saveAs);
  EXPECT_TRUE(ws.menus().manipulate);
  EXPECT_FALSE(ws.menus().servicebook);
  EXPECT_EQ(ws.Caption(), "Orchidlamp IPD Reader - " + folder.File("b.ipd"));
}

TEST_F(LoadTest, OptionDatabasesGetNoNodeAndNamesMatchExactly) {
  IpdBuilder b;
  b.Database("Address Book").Database("Options").Database("address book");
  b.Add(FieldRecord(2, {{32, Text("Ann")}}));
  ASSERT_TRUE(LoadBytes(b.Build()));
  EXPECT_NE(Db(0), kNoNode);
  EXPECT_EQ(Db(1), kNoNode);
  ASSERT_NE(Db(2), kNoNode);
  EXPECT_TRUE(Children(Db(2)).empty());
}

TEST_F(LoadTest, OnlyAnOptionsDatabaseLeavesTheRootAlone) {
  IpdBuilder b;
  b.Database("Options");
  ASSERT_TRUE(LoadBytes(b.Build()));
  EXPECT_EQ(ws.tree().size(), 1u);
  EXPECT_FALSE(ws.menus().saveAs);
}

TEST_F(LoadTest, BookmarkSlotOutlivesTheFileThatSetItUntilAnotherFileHasBookmarks) {
  IpdBuilder first;
  first.Database("Memos").Database("Tasks").Database("SMS Messages").Database("Browser Bookmarks");
  ASSERT_TRUE(LoadBytes(first.Build()));
  EXPECT_EQ(ws.Slot(Kind::BrowserBookmarks), 3);

  // Database 3 of the next file is read as bookmarks: slot 0 is tested before Memos.
  IpdBuilder second;
  second.Database("Tasks").Database("Calendar").Database("AutoText").Database("Memos");
  second.Add(Memo(3, "kept as a bookmark"));
  ASSERT_TRUE(LoadBytes(second.Build()));
  EXPECT_EQ(ws.Slot(Kind::BrowserBookmarks), 3);
  EXPECT_EQ(ws.Slot(Kind::AutoText), 2);
  EXPECT_EQ(ws.KindOfDatabase(3), Kind::BrowserBookmarks);
  EXPECT_EQ(ws.Counter(Kind::Memos), 0);
  ASSERT_EQ(ws.tree()[Db(3)].childCount, 1);
  EXPECT_EQ(ws.tree()[ws.tree()[Db(3)].firstChild].image, ImageKey::None);
}

TEST_F(LoadTest, DatabaseZeroIsReadAsBookmarksUnlessItIsTheServiceBook) {
  IpdBuilder sms;
  sms.Database("SMS Messages").Add(SmsRecord(0, true, 0, 0, {{2, Text("+1")}}));
  ASSERT_TRUE(LoadBytes(sms.Build()));
  EXPECT_EQ(ws.KindOfDatabase(0), Kind::BrowserBookmarks);
  EXPECT_EQ(ws.Counter(Kind::SmsMessages), 0);

  IpdBuilder books;
  books.Database("Service Book").Add(FieldRecord(0, {{3, TextZ("WAP")}}));
  ASSERT_TRUE(LoadBytes(books.Build()));
  EXPECT_EQ(ws.KindOfDatabase(0), Kind::ServiceBook);
  EXPECT_EQ(ws.Counter(Kind::ServiceBook), 1);
  EXPECT_TRUE(ws.menus().servicebook);
}

TEST_F(LoadTest, CountComesFromBytes40And41) {
  IpdBuilder b;
  b.Database("Memos").Database("Tasks");
  Bytes bytes = b.Build();
  // Big-endian count with the separator 0: read right.
  ASSERT_TRUE(LoadBytes(bytes));
  EXPECT_EQ(ws.tree().size(), 3u);
  // 256 databases written big-endian (01 00 00) read as none.
  bytes[39] = 1;
  bytes[40] = 0;
  bytes[41] = 0;
  (void)LoadBytes(bytes);  // the name table is then walked as records
  EXPECT_EQ(ws.tree().size(), 1u);
}

TEST_F(LoadTest, ZeroDatabasesWalkRecordsFromOffset42) {
  IpdBuilder b;
  Bytes bytes = b.Build();
  ASSERT_EQ(bytes.size(), 42u);
  const Bytes record = RecordBytes(Memo(0, "m"));
  bytes.insert(bytes.end(), record.begin(), record.end());
  EXPECT_TRUE(LoadBytes(bytes));
}

TEST_F(LoadTest, OneMarkerBlockIsSkippedBetweenRecords) {
  IpdBuilder b;
  b.Database(kFiller).Database("Tasks").Database("Calendar");
  b.Add(Task(1, "a")).Raw(Hex("FFFF02000100")).Add(Task(1, "b")).Raw(Hex("FFFF02000000")).Add(Task(1, "c"));
  ASSERT_TRUE(LoadBytes(b.Build()));
  EXPECT_EQ(Children(Db(1)), (std::vector<std::string>{"a", "b", "c"}));
}

TEST_F(LoadTest, TitleFailures) {
  EXPECT_EQ(LoadBytes({}).failure().message.text, "Error Parsing the file, couldn't read the DB titles");
  Bytes shortHeader(41, 0);
  EXPECT_FALSE(LoadBytes(shortHeader));
  IpdBuilder b;
  b.Database("Memos");
  Bytes bytes = b.Build();
  bytes.pop_back();  // the name runs past the end
  EXPECT_EQ(LoadBytes(bytes).failure().message.text, std::string(kDbTitlesError));
  bytes = b.Build();
  bytes[40] = 2;  // a second entry that is not there
  EXPECT_EQ(LoadBytes(bytes).failure().message.text, std::string(kDbTitlesError));
}

TEST_F(LoadTest, RecordRunningPastTheEndFailsButKeepsEarlierRecords) {
  IpdBuilder b;
  b.Database(kFiller).Database("Memos").Add(Memo(1, "ok")).Add(Memo(1, "cut"));
  Bytes bytes = b.Build();
  bytes.pop_back();
  const Status loaded = LoadBytes(bytes);
  ASSERT_FALSE(loaded);
  EXPECT_EQ(loaded.failure().message.text, "Error Parsing the file, couldn't read the file records");
  EXPECT_EQ(Children(Db(1)), (std::vector<std::string>{"ok"}));

  // A record length of FFFFFFFF cannot overflow the walk.
  bytes = b.Build();
  const std::size_t lengthAt = 42 + 2 + 15 + 2 + 6 + 2;
  bytes[lengthAt] = bytes[lengthAt + 1] = bytes[lengthAt + 2] = bytes[lengthAt + 3] = 0xFF;
  EXPECT_FALSE(LoadBytes(bytes));
}

TEST_F(LoadTest, RecordEndingExactlyAtTheEndIsRead) {
  IpdBuilder b;
  b.Database(kFiller).Database("Memos").Add(Memo(1, "last"));
  const Bytes bytes = b.Build();
  ASSERT_TRUE(LoadBytes(bytes));
  EXPECT_EQ(ws.tree()[3].tag->last, static_cast<std::int64_t>(bytes.size() - 1));
}

TEST_F(LoadTest, BodyRejectsSpansOutsideTheFile) {
  IpdBuilder b;
  b.Database("Memos").Add(Memo(0, "m"));
  ASSERT_TRUE(LoadBytes(b.Build()));
  EXPECT_THROW(ws.Body({0, 100000}), CommandError);
  EXPECT_THROW(ws.Body({-5, 3}), CommandError);
  EXPECT_TRUE(ws.Body({10, 9}).empty());
}

// Thousands of random and mutated files: every load ends in success or one of the
// two messages, and never reads outside the file (the sanitizer build checks).
TEST_F(LoadTest, RandomAndMutatedFilesNeverCrashTheLoader) {
  IpdBuilder b;
  b.Database("SMS Messages").Database("Browser Bookmarks").Database("Address Book - All").Database("Calendar - All");
  b.Database("Phone Call Logs").Database("Service Book").Database("AutoText").Database("Tasks");
  b.Add(SmsRecord(0, false, 1, 2, {{2, Text("+123")}, {4, Hex("06270644")}}));
  b.Add(Record{1, Body(1, 2, Hex("0401000541424344450012000361626364"))});
  b.Add(FieldRecord(2, {{10, FieldList({{160, Concat({Hex("00"), Utf16(u"Ann")})}, {32, Text("Lee")}})}}));
  b.Add(FieldRecord(3, {{10, Concat({Hex("01020304"), FieldList({{2, Text("meet")}})})}}));
  b.Add(FieldRecord(4, {{2, Hex("01")}, {12, Text("555")}, {159, Concat({Hex("00"), Utf16(u"Bo")})}}));
  b.Add(FieldRecord(5, {{3, TextZ("WAP")}, {22, FieldList({{6, LE32(7)}})}}));
  b.Add(FieldRecord(6, {{1, Text("teh")}, {2, Text("the")}}));
  b.Add(FieldRecord(7, {{2, Text("task")}, {9, Hex("02")}}));
  const Bytes good = b.Build();
  std::mt19937 rng(99);
  int ok = 0;
  for (int round = 0; round < 2500; ++round) {
    Bytes bytes = good;
    switch (round % 4) {
      case 0: bytes.resize(rng() % (good.size() + 1)); break;
      case 1:
        for (int k = 0; k < 4; ++k) bytes[rng() % bytes.size()] = static_cast<std::uint8_t>(rng());
        break;
      case 2:
        bytes.resize(rng() % 300);
        for (auto& x : bytes) x = static_cast<std::uint8_t>(rng());
        break;
      default:
        bytes[42 + rng() % (bytes.size() - 42)] = 0xFF;
        bytes.resize(bytes.size() - rng() % 20);
    }
    const Status s = LoadBytes(bytes);
    if (s) {
      ++ok;
      continue;
    }
    const std::string& text = s.failure().message.text;
    ASSERT_TRUE(text == kDbTitlesError || text == kFileRecordsError) << text;
  }
  EXPECT_GT(ok, 0);
}

}  // namespace
}  // namespace orchidlamp
