#include "editing/merge.h"

#include "core/ipd_format.h"
#include "editing/merge_source.h"
#include "editing/selection_tree.h"
#include "editing_fixture.h"

namespace orchidlamp {
namespace {

using namespace orchidlamp::testing;

Bytes MergeHeader(std::uint16_t count) {
  return Concat({Text("Inter@ctive Pager Backup/Restore File\n"),
                 {2, static_cast<std::uint8_t>(count >> 8), static_cast<std::uint8_t>(count), 0}});
}
Bytes Entry(std::string_view name) { return Concat({LE16(static_cast<std::uint32_t>(name.size() + 1)), TextZ(name)}); }
// The record as a merge writes it: new database id and handle, the rest as it was.
Bytes Merged(Record r, std::uint16_t db, std::uint16_t handle) {
  r.database = db;
  r.body[0] = static_cast<std::uint8_t>(handle);
  r.body[1] = static_cast<std::uint8_t>(handle >> 8);
  return RecordBytes(r);
}

class MergeTest : public EditingTest {
 protected:
  // Opens `firstFile` in the workspace and browses `secondFile` as the second.
  void Load(const Bytes& firstFile, const Bytes& secondFile) {
    Open(firstFile);
    first = LoadSelectionTree(ws.tree());
    auto browsed = BrowseSecondFile(folder.Write("second.ipd", secondFile), labeller);
    ASSERT_TRUE(browsed) << browsed.failure().message.text;
    second = std::move(browsed.value());
  }
  void Tick1(const std::string& node) { ToggleNodeCheck(first, first.FindByKeyOrTag(node)); }
  void Tick2(const std::string& node) { ToggleNodeCheck(second.tree, second.tree.FindByKeyOrTag(node)); }
  Result<std::optional<Message>> MergeTo(const std::string& path) {
    return Merge({first, ws.file().View()}, {second.tree, second.bytes}, path);
  }

  DatabaseTree first;
  SecondFile second;
};

TEST_F(MergeTest, TheSameDatabaseFromBothFilesTakesHandlesOneToN) {
  const Record a1 = TaskRecord(1, "a1", 40, 0xA1), a2 = TaskRecord(1, "a2", 41, 0xA2);
  const Record b1 = TaskRecord(2, "b1", 900, 0xB1), b2 = TaskRecord(2, "b2", 901, 0xB2);
  IpdBuilder one, two;
  one.Database("Handheld Agent").Database("Tasks").Add(a1).Add(a2);
  two.Database("Handheld Agent").Database("Memos").Database("Tasks").Add(b1).Add(MemoRecord(1, "m")).Add(b2);
  Load(one.Build(), two.Build());
  Tick1("1DBTop");
  Tick2(two.SpanOf(0));
  Tick2(two.SpanOf(2));

  const std::string out = folder.File("merged.ipd");
  auto saved = MergeTo(out);
  ASSERT_TRUE(saved) << saved.failure().message.text;
  EXPECT_EQ(*saved.value(),
            (Message{"File saved as " + out, " merging completed successfully", MessageIcon::Information}));
  EXPECT_EQ(ReadFile(out), Concat({MergeHeader(1), Entry("Tasks"), Merged(a1, 0, 1), Merged(a2, 0, 2),
                                   Merged(b1, 0, 3), Merged(b2, 0, 4)}));
  // Database 0 of a file without bookmarks reads as bookmarks: compare its size, not its labels.
  const auto shape = ReadBack(out);
  ASSERT_EQ(shape.size(), 1u);
  EXPECT_EQ(shape[0].rfind("Tasks|", 0), 0u);
  EXPECT_EQ(std::count(shape[0].begin(), shape[0].end(), '|'), 4);
}

TEST_F(MergeTest, TheFixedOrderBeatsTheTreeOrderAndAutoTextIsLeftOut) {
  const Record memo = MemoRecord(1, "memo", 3);
  const Record sms = SmsRecord(2, false, 0, 0, {{4, Text("hey")}}, 8);
  IpdBuilder one, two;
  one.Database("Handheld Agent").Database("Memos").Database("AutoText");
  one.Add(memo).Add(AutoTextRecord(2, "teh", "the"));
  two.Database("AutoText").Database("Handheld Agent").Database("SMS Messages");
  two.Add(AutoTextRecord(0, "adn", "and")).Add(sms);
  Load(one.Build(), two.Build());
  // The second tree holds only mergeable databases: no AutoText node to tick.
  EXPECT_EQ(second.tree.FindByKey("0DBTop"), kNoNode);
  Tick1("1DBTop");
  Tick1("2DBTop");
  Tick2("2DBTop");

  const std::string out = folder.File("merged.ipd");
  ASSERT_TRUE(MergeTo(out));
  EXPECT_EQ(ReadFile(out), Concat({MergeHeader(2), Entry("SMS Messages"), Entry("Memos"), Merged(sms, 0, 1),
                                   Merged(memo, 1, 1)}));
  const auto shape = ReadBack(out);
  ASSERT_EQ(shape.size(), 2u);
  EXPECT_EQ(shape[1], "Memos|memo");
}

TEST_F(MergeTest, NothingTickedWritesCountZeroOverALongerFileWithoutTruncating) {
  IpdBuilder one;
  one.Database("Handheld Agent").Database("AutoText").Add(AutoTextRecord(1, "teh", "the"));
  Load(one.Build(), one.Build());
  Tick1("1DBTop");  // AutoText: ticked, never written
  const std::string out = folder.Write("old.ipd", Bytes(100, 0x77));
  ASSERT_TRUE(MergeTo(out));
  const Bytes written = ReadFile(out);
  const Bytes header = MergeHeader(0);
  ASSERT_EQ(written.size(), 100u);
  EXPECT_TRUE(std::equal(header.begin(), header.end(), written.begin()));
  EXPECT_EQ(written[header.size()], 0x77);

  auto cancelled = MergeTo("");
  ASSERT_TRUE(cancelled);
  EXPECT_FALSE(cancelled.value());
  EXPECT_FALSE(MergeTo(folder.File("no/such/folder.ipd")));
}

TEST_F(MergeTest, RenumberingKeepsTheLengthAndCutsShortRecordsAsTheyStand) {
  IpdBuilder b;
  b.Database("Tasks").Add(TaskRecord(0, "long title", 0x1234, 0xCAFEBABE));
  b.Add(Record{0, Hex("0100")});  // a record of handle bytes only
  const Bytes file = b.Build();
  const ByteView view = file;
  const Bytes renumbered = RenumberRecord(*RecordSpan::Parse(b.SpanOf(0)), view, 3, 0x10002);
  EXPECT_EQ(renumbered, Merged(TaskRecord(3, "long title", 0x0002, 0xCAFEBABE), 3, 2));
  // Length 3: version and a handle, no unique id, no fields.
  EXPECT_EQ(RenumberRecord(*RecordSpan::Parse(b.SpanOf(1)), view, 0, 5), Hex("0000" "03000000" "00" "0500"));
  EXPECT_THROW(RenumberRecord(RecordSpan{static_cast<std::int64_t>(file.size()), static_cast<std::int64_t>(file.size()) + 4},
                              view, 0, 1),
               CommandError);
}

class SecondFileTest : public EditingTest {};

TEST_F(SecondFileTest, ShowsOnlyTheNineDatabasesLabelledAsTheMainTreeWithSlotsOfItsOwn) {
  IpdBuilder b;
  // Tasks at index 0: the main loader would read them as bookmarks; the second file's slots start at -1.
  b.Database("Tasks").Database("Browser Bookmarks").Database("Address Book - All").Database("Phone Call Logs");
  b.Database("Unknown");
  b.Add(TaskRecord(0, "t")).Add(FieldRecord(1, {{1, Text("bm")}})).Add(FieldRecord(4, {{1, Text("u")}}));
  const std::string path = folder.Write("second.ipd", b.Build());
  auto loaded = LoadSecondFile(path, labeller);
  ASSERT_TRUE(loaded) << loaded.failure().message.text;
  const DatabaseTree& tree = loaded->tree;
  EXPECT_EQ(tree[tree.Root()].key, "Top");
  EXPECT_EQ(tree[tree.Root()].text, path);
  std::vector<std::string> keys;
  tree.ForEachChild(tree.Root(), [&](NodeId db) { keys.push_back(tree[db].key + "=" + tree[db].text); });
  EXPECT_EQ(keys, (std::vector<std::string>{"0DBTop=Tasks", "2DBTop=Address Book - All", "3DBTop=Phone Call Logs"}));
  const NodeId task = tree.FindByTag(b.SpanOf(0));
  ASSERT_NE(task, kNoNode);
  EXPECT_EQ(tree[task].text, "t");
  EXPECT_EQ(tree[task].image, ImageKey::tasks);
  EXPECT_EQ(tree.size(), 5u);

  auto browsed = BrowseSecondFile(path, labeller);
  ASSERT_TRUE(browsed);
  for (const TreeNode& n : browsed->tree.nodes()) EXPECT_EQ(n.image, ImageKey::TickNone) << n.text;
}

TEST_F(SecondFileTest, RecordLabelsAndImagesMatchTheMainTree) {
  IpdBuilder b;
  b.Database("Handheld Agent").Database("SMS Messages").Database("Tasks");
  b.Add(SmsRecord(1, true, 0, 0, {{2, Text("+1")}, {4, Text("sent")}}));
  b.Add(SmsRecord(1, false, 0, 0, {{2, Text("+2")}, {4, Text("got")}}));
  b.Add(TaskRecord(2, "task"));
  const Bytes bytes = b.Build();
  Open(bytes);
  auto loaded = LoadSecondFile(folder.Write("second.ipd", bytes), labeller);
  ASSERT_TRUE(loaded);
  for (std::size_t i = 0; i < 3; ++i) {
    const TreeNode& main = ws.tree()[ws.tree().FindByTag(b.SpanOf(i))];
    const TreeNode& other = loaded->tree[loaded->tree.FindByTag(b.SpanOf(i))];
    EXPECT_EQ(other.text, main.text);
    EXPECT_EQ(other.image, main.image);
  }
}

TEST_F(SecondFileTest, LoaderFailuresCarryTheLoadersMessages) {
  IpdBuilder b;
  b.Database("Tasks").Add(TaskRecord(0, "t"));
  Bytes file = b.Build();
  Bytes titles(file.begin(), file.begin() + 45);
  auto badTitles = LoadSecondFile(folder.Write("titles.ipd", titles), labeller);
  ASSERT_FALSE(badTitles);
  EXPECT_EQ(badTitles.failure().message.text, kDbTitlesError);

  file.pop_back();
  auto badRecords = LoadSecondFile(folder.Write("records.ipd", file), labeller);
  ASSERT_FALSE(badRecords);
  EXPECT_EQ(badRecords.failure().message.text, kFileRecordsError);

  EXPECT_FALSE(LoadSecondFile(folder.File("absent.ipd"), labeller));
}

}  // namespace
}  // namespace orchidlamp
