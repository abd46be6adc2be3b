#include "core/workspace.h"

#include <gtest/gtest.h>

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
  std::vector<std::string> Shape() const {  // "name|record|record" per database node
    std::vector<std::string> out;
    ws.tree().ForEachChild(ws.tree().Root(), [&](NodeId db) {
      out.push_back(ws.tree().Text(db));
      ws.tree().ForEachChild(db, [&](NodeId r) { out.back() += "|" + ws.tree().Text(r); });
    });
    return out;
  }
  KindLabeller labeller;
  Workspace ws{labeller};
  TempFolder folder;
};

Record Memo(std::uint16_t db, std::string title) { return FieldRecord(db, {{1, Text(title)}}); }

TEST_F(LoadTest, RootDatabasesAndRecordsInCollectionOrderWithStatusMenusAndCaption) {
  EXPECT_EQ(ws.tree().Text(0) + "/" + ws.status().main + "/" + ws.Caption(),
            "IPD Databases/Please open IPD file from File menu/Orchidlamp IPD Reader");
  IpdBuilder b;  // database 0 would read as bookmarks: one of no known kind goes first
  b.Database("Handheld Agent").Database("Memos").Database("Tasks").Database("Options").Database("memos");
  b.Add(Memo(1, "first")).Add(FieldRecord(2, {{2, Text("do it")}})).Raw(Hex("FFFF02000100"));  // one marker block
  b.Add(Memo(1, "second")).Add(Memo(4, "x"));
  ASSERT_TRUE(LoadBytes(b.Build()));
  // An "Option" database gets no node; names match exactly, so "memos" holds no memos.
  EXPECT_EQ(Shape(), (std::vector<std::string>{"Handheld Agent", "Memos|first|second", "Tasks|do it", "memos"}));
  const DatabaseTree& t = ws.tree();
  EXPECT_EQ(t.Text(0) + "/" + t.Key(2) + "/" + t.TagText(5), folder.File("b.ipd") + "/1DBTop/" + b.SpanOf(0));
  EXPECT_EQ(t.Image(5), ImageKey::memos);  // records follow all databases, in file order
  EXPECT_EQ(ws.status().main + "\n" + ws.status().details,
            "b.ipd\n0 SMS Messages, 0 Address Book (All), 1 Tasks, 2 Memos, 0 Calendar, 0 Phone Calls, 0 Service Book");
  EXPECT_TRUE(ws.menus().saveAs && ws.menus().manipulate && !ws.menus().servicebook);
  EXPECT_EQ(ws.Caption(), "Orchidlamp IPD Reader - " + folder.File("b.ipd"));
  ASSERT_TRUE(LoadBytes(IpdBuilder().Database("Options").Build()));
  EXPECT_FALSE(ws.tree().size() > 1 || ws.menus().saveAs || ws.menus().manipulate);
}

// The counts need no record nodes; a tag keeps its offsets whatever their size.
TEST_F(LoadTest, DatabasesOnlyKeepsTheCountsAndTagsKeepAnyOffset) {
  IpdBuilder b;
  b.Database("Handheld Agent").Database("Memos").Add(Memo(1, "m"));
  ASSERT_TRUE(ws.Load(folder.Write("b.ipd", b.Build()), StoredSettings{}, nullptr, TreeScope::DatabasesOnly));
  EXPECT_EQ(Shape(), (std::vector<std::string>{"Handheld Agent", "Memos"}));
  EXPECT_NE(ws.status().details.find(" 1 Memos, "), std::string::npos);
  DatabaseTree tree;
  const NodeId top = tree.Add(kNoNode, "Top", "t", ImageKey::None);
  for (RecordSpan span : {RecordSpan{7, 9}, RecordSpan{-1, std::int64_t{5} << 32}, RecordSpan{8, 10}})
    tree.Add(top, "", "r", ImageKey::None, span);
  EXPECT_EQ(tree.TagText(1) + " " + tree.TagText(2) + " " + tree.TagText(3), "7:9 -1:21474836480 8:10");
  EXPECT_EQ(tree.FindByTag("8:10"), 3);
}

TEST_F(LoadTest, SlotsZeroAndOneOutliveTheFileThatSetThem) {
  ASSERT_TRUE(LoadBytes(IpdBuilder().Database("Memos").Database("SMS Messages").Database("Browser Bookmarks").Build()));
  // Database 2 of the next file is read as bookmarks (slot 0 is tested before Memos).
  ASSERT_TRUE(LoadBytes(IpdBuilder().Database("Task").Database("AutoText").Database("Memos").Add(Memo(2, "")).Build()));
  EXPECT_EQ(std::pair(ws.Slot(Kind::BrowserBookmarks), ws.Slot(Kind::AutoText)), std::pair(2, 1));
  EXPECT_EQ(ws.KindOfDatabase(2), Kind::BrowserBookmarks);
  EXPECT_EQ(ws.Counter(Kind::Memos), 0);
  // Database 0 is read as bookmarks unless it is the service book.
  ASSERT_TRUE(LoadBytes(IpdBuilder().Database("Service Book").Add(FieldRecord(0, {{3, TextZ("WAP")}})).Build()));
  EXPECT_EQ(ws.KindOfDatabase(0), Kind::ServiceBook);
  EXPECT_TRUE(ws.menus().servicebook);
  Workspace fresh(labeller);
  ASSERT_TRUE(fresh.Load(folder.Write("s.ipd", IpdBuilder().Database("SMS Messages").Build()), StoredSettings{}));
  EXPECT_EQ(fresh.KindOfDatabase(0), Kind::BrowserBookmarks);
}

// What was read stays usable: its counters show and its menus open.
TEST_F(LoadTest, ARecordRunningPastTheEndFailsButKeepsTheRecordsBeforeIt) {
  IpdBuilder b;
  b.Database("Handheld Agent").Database("Memos").Add(Memo(1, "ok")).Add(Memo(1, "cut"));
  Bytes bytes = b.Build();
  bytes.pop_back();
  EXPECT_EQ(LoadBytes(bytes).failure().message.text, kFileRecordsError);
  EXPECT_EQ(Shape(), (std::vector<std::string>{"Handheld Agent", "Memos|ok"}));
  EXPECT_NE(ws.status().details.find(" 1 Memos, "), std::string::npos);
  EXPECT_TRUE(ws.menus().saveAs && ws.menus().manipulate);
  EXPECT_EQ(LoadBytes({}).failure().message.text, kDbTitlesError);
  ASSERT_TRUE(LoadBytes(b.Build()));  // tags outside the loaded bytes never reach a reader
  EXPECT_THROW(ws.Body({0, 100000}), CommandError);
  EXPECT_THROW(ws.Body({-5, 3}), CommandError);
  EXPECT_TRUE(ws.Body({10, 9}).empty());
}

}  // namespace
}  // namespace orchidlamp
