#include "editing/merge.h"

#include "core/ipd_format.h"
#include "editing/selection_tree.h"
#include "editing_fixture.h"

namespace orchidlamp {
namespace {

using namespace orchidlamp::testing;

// The magic and version, the count 16-bit big-endian at bytes 39-40, then 00.
Bytes MergeHeader(std::uint8_t n) { return Concat({Text("Inter@ctive Pager Backup/Restore File\n\x02"), {0, n, 0}}); }
// The record as a merge writes it: new database id and handle, the rest as it was.
Bytes Merged(Record r, std::uint16_t db, std::uint16_t handle) {
  r.database = db;
  r.body[0] = static_cast<std::uint8_t>(handle), r.body[1] = static_cast<std::uint8_t>(handle >> 8);
  return RecordBytes(r);
}

class MergeTest : public EditingTest {
 protected:
  void Load(const Bytes& firstFile, const Bytes& secondFile) {
    Open(firstFile);
    first = LoadSelectionTree(ws.tree());
    second = std::move(BrowseSecondFile(folder.Write("second.ipd", secondFile), labeller).value());
  }
  void Tick(DatabaseTree& tree, const std::string& node) { ToggleNodeCheck(tree, tree.FindByKeyOrTag(node)); }
  auto MergeTo(const std::string& path) { return Merge({first, ws.file().View()}, {second.tree, second.bytes}, path); }
  DatabaseTree first;
  SecondFile second;
};

TEST_F(MergeTest, NineNamesInAFixedOrderWithHandlesOneToNOverBothFiles) {
  const Record a1 = TaskRecord(1, "a1", 40, 0xA1), a2 = TaskRecord(1, "a2", 41, 0xA2), memo = MemoRecord(2, "m", 3);
  const Record b1 = TaskRecord(3, "b1", 900, 0xB1), b2 = TaskRecord(3, "b2", 901, 0xB2);
  const Record sms = SmsRecord(2, false, 0, 0, {{4, Text("hey")}}, 8);
  IpdBuilder one, two;
  one.Database("Handheld Agent").Database("Tasks").Database("Memos").Database("AutoText");
  one.Add(a1).Add(a2).Add(memo).Add(FieldRecord(3, {{1, TextZ("teh")}, {2, TextZ("the")}}));
  two.Database("AutoText").Database("Handheld Agent").Database("SMS Messages").Database("Tasks");
  two.Add(b1).Add(sms).Add(b2);
  Load(one.Build(), two.Build());
  EXPECT_EQ(second.tree.FindByKey("0DBTop"), kNoNode);  // the second tree shows only mergeable databases
  for (const char* node : {"1DBTop", "2DBTop", "3DBTop"}) Tick(first, node);  // AutoText: ticked, never written
  for (const std::string& node : {std::string("2DBTop"), two.SpanOf(0), two.SpanOf(2)}) Tick(second.tree, node);

  const std::string out = folder.File("merged.ipd");
  EXPECT_EQ(MergeTo(out).value(),
            (Message{"File saved as " + out, " merging completed successfully", MessageIcon::Information}));
  // SMS before Memos before Tasks, whatever the trees' order.
  EXPECT_EQ(ReadFile(out), Concat({MergeHeader(3), NameBytes("SMS Messages"), NameBytes("Memos"), NameBytes("Tasks"),
                                   Merged(sms, 0, 1), Merged(memo, 1, 1), Merged(a1, 2, 1), Merged(a2, 2, 2),
                                   Merged(b1, 2, 3), Merged(b2, 2, 4)}));
  EXPECT_EQ(ReadBack(out).back(), "Tasks|a1|a2|b1|b2");
}

TEST_F(MergeTest, NothingTickedWritesCountZeroOverALongerFileAndFailuresWriteNothing) {
  Load(IpdBuilder().Database("Tasks").Build(), IpdBuilder().Database("Tasks").Build());
  const std::string out = folder.Write("old.ipd", Bytes(100, 0x77));
  ASSERT_TRUE(MergeTo(out));
  EXPECT_EQ(ReadFile(out), Concat({MergeHeader(0), Bytes(100 - 42, 0x77)}));
  EXPECT_EQ(MergeTo("").value(), std::nullopt);
  EXPECT_FALSE(MergeTo(folder.File("no/such/folder.ipd")));
}

TEST(RenumberRecord, KeepsTheLengthCutsShortRecordsAsTheyStandAndKeepsTheHandlesLow16Bits) {
  IpdBuilder b;
  b.Database("Tasks").Add(TaskRecord(0, "long title", 0x1234, 0xCAFEBABE)).Add(Record{0, Hex("0100")});
  const Bytes file = b.Build();
  EXPECT_EQ(RenumberRecord(*RecordSpan::Parse(b.SpanOf(0)), file, 3, 0x10002),
            Merged(TaskRecord(3, "long title", 0, 0xCAFEBABE), 3, 2));
  // Length 3: version and a handle, no unique id, no fields.
  EXPECT_EQ(RenumberRecord(*RecordSpan::Parse(b.SpanOf(1)), file, 0, 5), Hex("0000" "03000000" "00" "0500"));
  const auto end = static_cast<std::int64_t>(file.size());
  EXPECT_THROW(RenumberRecord(RecordSpan{end, end + 4}, file, 0, 1), CommandError);
}

TEST_F(MergeTest, TheSecondFileShowsOnlyTheNineDatabasesLabelledAsTheMainTreeWithSlotsOfItsOwn) {
  IpdBuilder b;
  // Tasks at index 0: the main loader would read them as bookmarks; the second file's slots start at -1.
  b.Database("Tasks").Database("Browser Bookmarks").Database("Address Book - All").Database("SMS Messages");
  b.Add(TaskRecord(0, "t")).Add(FieldRecord(1, {{1, Text("bm")}})).Add(SmsRecord(3, true, 0, 0, {{4, Text("s")}}));
  Open(b.Build());
  const std::string path = folder.Write("second.ipd", b.Build());
  auto loaded = LoadSecondFile(path, labeller);
  ASSERT_TRUE(loaded) << loaded.failure().message.text;
  const DatabaseTree& tree = loaded->tree;
  std::vector<std::string> keys = {tree.Key(tree.Root()) + "=" + tree.Text(tree.Root())};
  tree.ForEachChild(tree.Root(), [&](NodeId db) { keys.push_back(tree.Key(db) + "=" + tree.Text(db)); });
  EXPECT_EQ(keys, (std::vector<std::string>{"Top=" + path, "0DBTop=Tasks", "2DBTop=Address Book - All",
                                            "3DBTop=SMS Messages"}));
  EXPECT_EQ(tree.Image(tree.FindByTag(b.SpanOf(0))), ImageKey::tasks);
  const RecordLabel main = ws.tree().Label(ws.tree().FindByTag(b.SpanOf(2))), other = tree.Label(tree.FindByTag(b.SpanOf(2)));
  EXPECT_EQ(std::pair(other.text, other.image), std::pair(main.text, main.image));
  const auto browsed = BrowseSecondFile(path, labeller);
  for (NodeId id = 0; id < static_cast<NodeId>(browsed->tree.size()); ++id) EXPECT_EQ(browsed->tree.Image(id), ImageKey::TickNone);

  const Bytes whole = b.Build(), cut(whole.begin(), whole.end() - 1), titles(whole.begin(), whole.begin() + 45);
  EXPECT_EQ(LoadSecondFile(folder.Write("records.ipd", cut), labeller).failure().message.text, kFileRecordsError);
  EXPECT_EQ(LoadSecondFile(folder.Write("titles.ipd", titles), labeller).failure().message.text, kDbTitlesError);
  EXPECT_FALSE(LoadSecondFile(folder.File("absent.ipd"), labeller));
}

}  // namespace
}  // namespace orchidlamp
