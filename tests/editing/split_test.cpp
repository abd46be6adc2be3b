#include "editing/split.h"

#include "core/hex_text.h"
#include "editing/database_entries.h"
#include "editing/selection_tree.h"
#include "editing_fixture.h"

namespace orchidlamp {
namespace {

using namespace orchidlamp::testing;

Bytes Header(std::uint8_t count) { return Concat({Text("Inter@ctive Pager Backup/Restore File\n"), {2, 0, count, 0}}); }
Bytes Renumbered(Record r, std::uint16_t db) { return r.database = db, RecordBytes(r); }

TEST(SplitEntries, OnlyTheTenNamesHaveAnEntryMatchedExactly) {
  for (std::string_view name : {"AutoText", "SMS Messages", "Address Book", "Address Book - All", "Memos", "Tasks",
                                "Calendar", "Calendar - All", "Service Book", "Phone Call Logs"})
    EXPECT_EQ(HexToBytes(SplitEntryHex(name).value()), Concat({LE16(name.size() + 1), TextZ(name)})) << name;
  for (std::string_view name : {"Browser Bookmarks", "tasks", "Tasks "}) EXPECT_EQ(SplitEntryHex(name), std::nullopt);
}

class SplitTest : public EditingTest {
 protected:
  auto SplitTo(const std::string& path) { return Split(sel, ws.file().View(), path); }
  void Tick(const std::string& keyOrTag) { ToggleNodeCheck(sel, sel.FindByKeyOrTag(keyOrTag)); }
  DatabaseTree sel;
};

TEST_F(SplitTest, TickedDatabasesAndRecordsTakeTheCounterOfTickedDatabasesAsTheirId) {
  const Record sms = SmsRecord(1, true, 0, 0, {{4, Text("hello")}}, 9), mark = FieldRecord(2, {{1, Text("x")}}, 3);
  const Record t1 = TaskRecord(4, "t1", 4), t2 = TaskRecord(4, "t2", 5);
  IpdBuilder b;
  b.Database("Handheld Agent").Database("SMS Messages").Database("Browser Bookmarks").Database("Memos");
  b.Database("Tasks").Add(t1).Add(sms).Add(mark).Add(MemoRecord(3, "m")).Add(t2);
  Open(b.Build());
  sel = LoadSelectionTree(ws.tree());
  for (const std::string& node : {std::string("1DBTop"), b.SpanOf(2), b.SpanOf(4)}) Tick(node);
  const std::string out = folder.File("split.ipd");
  EXPECT_EQ(SplitTo(out).value(), (Message{"File saved as " + out, "Split is complete", MessageIcon::Information}));
  // Three databases counted in tree order, two entries written: bookmarks have none, yet count for the ids
  // (and for the header, so a reader takes the first record for a third name).
  EXPECT_EQ(ReadFile(out), Concat({Header(3), NameBytes("SMS Messages"), NameBytes("Tasks"), Renumbered(sms, 0),
                                   Renumbered(mark, 1), Renumbered(t2, 2)}));
}

// The root is known by its text: a record whose label reads as the root's text is passed over too.
TEST_F(SplitTest, ARecordLabelledLikeTheRootIsLeftOut) {
  const Record lookalike = TaskRecord(1, folder.File("open.ipd")), task = TaskRecord(1, "t");
  IpdBuilder b;
  b.Database("Handheld Agent").Database("Tasks").Add(lookalike).Add(task);
  Open(b.Build());
  sel = LoadSelectionTree(ws.tree());
  Tick("Top");
  const std::string out = folder.File("split.ipd");
  ASSERT_TRUE(SplitTo(out));
  EXPECT_EQ(ReadFile(out), Concat({Header(1), NameBytes("Tasks"), Renumbered(task, 0)}));
}

TEST_F(SplitTest, WritesOverALongerFileWithoutTruncatingAndFailuresWriteNothing) {
  IpdBuilder b;
  b.Database("Handheld Agent").Database("Tasks").Add(TaskRecord(1, "t"));
  Open(b.Build());
  sel = LoadSelectionTree(ws.tree());
  const std::string out = folder.Write("old.ipd", Bytes(300, 0xEE));
  ASSERT_TRUE(SplitTo(out));  // nothing ticked: the header alone
  EXPECT_EQ(ReadFile(out), Concat({Header(0), Bytes(300 - 42, 0xEE)}));
  Tick("1DBTop");
  ASSERT_TRUE(SplitTo(out));
  const Bytes content = Concat({Header(1), NameBytes("Tasks"), Renumbered(TaskRecord(1, "t"), 0)});
  EXPECT_EQ(ReadFile(out), Concat({content, Bytes(300 - content.size(), 0xEE)}));
  // Database 0 of a file without bookmarks reads as bookmarks: only the record count is compared.
  EXPECT_EQ(ReadBack(folder.Write("fresh.ipd", content)).front().find('|'), 5u);

  EXPECT_EQ(SplitTo("").value(), std::nullopt);
  auto unwritable = SplitTo(folder.File("missing/split.ipd"));
  ASSERT_FALSE(unwritable);
  EXPECT_NE(unwritable.failure().message.text.find("missing/split.ipd"), std::string::npos);
  // A tag that does not lie in the loaded bytes stops the split before the file is opened.
  sel.Add(sel.Parent(static_cast<NodeId>(sel.size()) - 1), "", "x", ImageKey::TickAll, RecordSpan{5000, 5010});
  auto outside = SplitTo(folder.File("outside.ipd"));
  ASSERT_FALSE(outside);
  EXPECT_EQ(outside.failure().message.text, "Record position 4994:5010 lies outside the loaded file");
  EXPECT_FALSE(FileExists(folder.File("outside.ipd")));
}

}  // namespace
}  // namespace orchidlamp
