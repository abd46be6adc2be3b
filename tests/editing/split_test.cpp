#include "editing/split.h"

#include "core/ipd_format.h"
#include "editing/database_entries.h"
#include "editing/selection_tree.h"
#include "editing_fixture.h"

namespace orchidlamp {
namespace {

using namespace orchidlamp::testing;

Bytes Header(std::uint8_t count) { return Concat({Text("Inter@ctive Pager Backup/Restore File\n"), {2, 0, count, 0}}); }
Bytes Entry(std::string_view name) { return Concat({LE16(static_cast<std::uint32_t>(name.size() + 1)), TextZ(name)}); }
Bytes Renumbered(Record r, std::uint16_t db) {
  r.database = db;
  return RecordBytes(r);
}

class SplitTest : public EditingTest {
 protected:
  NodeId Node(const std::string& keyOrTag) const { return sel.FindByKeyOrTag(keyOrTag); }
  Result<std::optional<Message>> SplitTo(const std::string& path) { return Split(sel, ws.file().View(), path); }
  DatabaseTree sel;
};

TEST(SplitEntries, TheTenNamesGiveTheirFixedEntriesAndNothingElseHasOne) {
  const std::vector<std::pair<std::string_view, std::string_view>> table = {
      {"AutoText", "09004175746F5465787400"},
      {"SMS Messages", "0D00534D53204D6573736167657300"},
      {"Address Book", "0D004164647265737320426F6F6B00"},
      {"Address Book - All", "13004164647265737320426F6F6B202D20416C6C00"},
      {"Memos", "06004D656D6F7300"},
      {"Tasks", "06005461736B7300"},
      {"Calendar", "090043616C656E64617200"},
      {"Calendar - All", "0F0043616C656E646172202D20416C6C00"},
      {"Service Book", "0D005365727669636520426F6F6B00"},
      {"Phone Call Logs", "100050686F6E652043616C6C204C6F677300"}};
  for (const auto& [name, hex] : table) EXPECT_EQ(SplitEntryHex(name), std::string(hex)) << name;
  EXPECT_EQ(SplitEntryHex("Browser Bookmarks"), std::nullopt);
  EXPECT_EQ(SplitEntryHex("tasks"), std::nullopt);
  EXPECT_EQ(SplitEntryHex("Tasks "), std::nullopt);
}

TEST_F(SplitTest, TwoDatabasesInTreeOrderGetIdsZeroAndOneAndReadBack) {
  const Record sms = SmsRecord(1, true, 0, 0, {{4, Text("hello")}}, 9);
  const Record t1 = TaskRecord(3, "t1", 4), t2 = TaskRecord(3, "t2", 5);
  IpdBuilder b;
  b.Database("Handheld Agent").Database("SMS Messages").Database("Memos").Database("Tasks");
  b.Add(t1).Add(sms).Add(MemoRecord(2, "m")).Add(t2);
  Open(b.Build());
  sel = LoadSelectionTree(ws.tree());
  ToggleNodeCheck(sel, Node("1DBTop"));
  ToggleNodeCheck(sel, Node("3DBTop"));

  const std::string out = folder.File("split.ipd");
  auto saved = SplitTo(out);
  ASSERT_TRUE(saved) << saved.failure().message.text;
  EXPECT_EQ(*saved.value(), (Message{"File saved as " + out, "Split is complete", MessageIcon::Information}));
  EXPECT_EQ(ReadFile(out), Concat({Header(2), Entry("SMS Messages"), Entry("Tasks"), Renumbered(sms, 0),
                                   Renumbered(t1, 1), Renumbered(t2, 1)}));
  const auto shape = ReadBack(out);
  ASSERT_EQ(shape.size(), 2u);
  // Database 0 of a file without bookmarks reads as bookmarks, so only its size is compared.
  EXPECT_EQ(shape[0].rfind("SMS Messages|", 0), 0u);
  EXPECT_EQ(std::count(shape[0].begin(), shape[0].end(), '|'), 1);
  EXPECT_EQ(shape[1], "Tasks|t1|t2");
}

TEST_F(SplitTest, SingleRecordsAndADatabaseWithoutEntryStillCountForTheIds) {
  const Record mark = FieldRecord(1, {{1, Text("x")}}, 3);
  const Record t1 = TaskRecord(2, "t1", 4), t2 = TaskRecord(2, "t2", 5);
  IpdBuilder b;
  b.Database("Handheld Agent").Database("Browser Bookmarks").Database("Tasks");
  b.Add(mark).Add(t1).Add(t2);
  Open(b.Build());
  sel = LoadSelectionTree(ws.tree());
  ToggleNodeCheck(sel, Node(b.SpanOf(0)));
  ToggleNodeCheck(sel, Node(b.SpanOf(2)));
  ASSERT_EQ(sel[Node("2DBTop")].image, ImageKey::TickSome);

  const std::string out = folder.File("split.ipd");
  ASSERT_TRUE(SplitTo(out));
  // Two databases counted, one entry written: the task keeps id 1.
  EXPECT_EQ(ReadFile(out), Concat({Header(2), Entry("Tasks"), Renumbered(mark, 0), Renumbered(t2, 1)}));
}

TEST_F(SplitTest, NothingTickedWritesTheHeaderOnlyAndALongerFileKeepsItsTail) {
  IpdBuilder b;
  b.Database("Handheld Agent").Database("Tasks").Add(TaskRecord(1, "t"));
  Open(b.Build());
  sel = LoadSelectionTree(ws.tree());
  const Bytes old(300, 0xEE);
  const std::string out = folder.Write("old.ipd", old);
  ASSERT_TRUE(SplitTo(out));
  Bytes expected = Header(0);
  expected.insert(expected.end(), old.begin() + static_cast<std::ptrdiff_t>(expected.size()), old.end());
  EXPECT_EQ(ReadFile(out), expected);

  ToggleNodeCheck(sel, Node("1DBTop"));
  ASSERT_TRUE(SplitTo(out));
  const Bytes written = ReadFile(out);
  ASSERT_EQ(written.size(), old.size());
  const Bytes content = Concat({Header(1), Entry("Tasks"), Renumbered(TaskRecord(1, "t"), 0)});
  EXPECT_TRUE(std::equal(content.begin(), content.end(), written.begin()));
  EXPECT_TRUE(std::all_of(written.begin() + static_cast<std::ptrdiff_t>(content.size()), written.end(),
                          [](std::uint8_t c) { return c == 0xEE; }));
}

TEST_F(SplitTest, FailuresWriteNothing) {
  IpdBuilder b;
  b.Database("Handheld Agent").Database("Tasks").Add(TaskRecord(1, "t"));
  Open(b.Build());
  sel = LoadSelectionTree(ws.tree());
  ToggleNodeCheck(sel, Node("1DBTop"));

  auto cancelled = SplitTo("");
  ASSERT_TRUE(cancelled);
  EXPECT_FALSE(cancelled.value().has_value());

  auto unwritable = SplitTo(folder.File("missing/split.ipd"));
  ASSERT_FALSE(unwritable);
  EXPECT_NE(unwritable.failure().message.text.find("missing/split.ipd"), std::string::npos);

  // A tag that does not lie in the loaded bytes stops the split before the file is opened.
  sel[sel.nodes().size() - 1].tag = RecordSpan{5000, 5010};
  auto outside = SplitTo(folder.File("outside.ipd"));
  ASSERT_FALSE(outside);
  EXPECT_NE(outside.failure().message.text.find("outside the loaded file"), std::string::npos);
  EXPECT_FALSE(FileExists(folder.File("outside.ipd")));
}

}  // namespace
}  // namespace orchidlamp
