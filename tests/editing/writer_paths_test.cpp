// The split and merge writers copy record bytes straight into one output
// buffer. These tests build the same files the way the writers are defined, on
// hex text cut by position, and require byte equality on random backups with
// random selections.

#include <algorithm>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "core/hex_text.h"
#include "core/ipd_format.h"
#include "editing/database_entries.h"
#include "editing/merge.h"
#include "editing/merge_source.h"
#include "editing/selection_tree.h"
#include "editing/split.h"
#include "editing_fixture.h"
#include "generators/large_backup.h"

namespace orchidlamp {
namespace {

using namespace orchidlamp::testing;

// Hex digits [from, from + count) of `hex`, what exists of them: the way the
// writers cut record text.
std::string Cut(std::string_view hex, std::size_t from, std::size_t count) {
  if (from >= hex.size()) return {};
  return std::string(hex.substr(from, count));
}

// The record's text from byte `from` through `through` of the file's hex.
std::string RangeHex(std::string_view fileHex, std::int64_t from, std::int64_t through) {
  return std::string(fileHex.substr(static_cast<std::size_t>(2 * from), static_cast<std::size_t>(2 * (through - from + 1))));
}

Bytes SplitByHex(const DatabaseTree& selection, ByteView loaded) {
  const std::string fileHex = BytesToHex(loaded);
  const std::string& rootText = RootText(selection);
  std::string names, records;
  std::size_t counter = 0;
  for (const TreeNode& node : selection.nodes()) {
    if (node.image == ImageKey::TickNone || node.text == rootText) continue;
    if (node.childCount > 0) {
      if (auto entry = SplitEntryHex(node.text)) names += *entry;
      ++counter;
      continue;
    }
    records += ByteToHex(static_cast<std::int64_t>(counter) - 1) + RangeHex(fileHex, node.tag->first - 6, node.tag->last);
  }
  return HexToBytes(IpdHeaderHex(counter) + names + records);
}

std::string RenumberedHex(std::string_view partHex, std::uint32_t databaseId, std::uint32_t handle) {
  return ByteToHex(databaseId) + ByteToHex(databaseId >> 8) + Cut(partHex, 0, 10) + ByteToHex(handle) +
         ByteToHex(handle >> 8) + Cut(partHex, 14, 8) + Cut(partHex, 22, partHex.size());
}

Bytes MergeByHex(const MergeSource& first, const MergeSource& second) {
  const std::string firstHex = BytesToHex(first.bytes), secondHex = BytesToHex(second.bytes);
  std::string names, records;
  std::uint32_t databaseId = 0;
  for (std::string_view name : kMergeDatabaseNames) {
    std::string collected;
    std::uint32_t handle = 1;
    for (const auto& [source, hex] : {std::pair{&first, &firstHex}, std::pair{&second, &secondHex}}) {
      const DatabaseTree& tree = source->tree;
      for (NodeId id = 0; id < static_cast<NodeId>(tree.size()); ++id) {
        const TreeNode& node = tree[id];
        if (node.image == ImageKey::TickNone || node.text == RootText(tree) || node.text != name || node.childCount == 0)
          continue;
        tree.ForEachChild(id, [&](NodeId child) {
          const TreeNode& record = tree[child];
          if (record.image == ImageKey::TickNone) return;
          collected += RenumberedHex(RangeHex(*hex, record.tag->first - 5, record.tag->last), databaseId, handle++);
        });
      }
    }
    if (collected.empty()) continue;
    names += NameEntryHex(name);
    records += collected;
    ++databaseId;
  }
  const std::string header = std::string(kIpdPrefixHex.substr(0, kIpdPrefixHex.size() - 2)) +
                             ByteToHex(databaseId >> 8) + ByteToHex(databaseId) + "00";
  return HexToBytes(header + names + records);
}

// A backup of `count` records of every kind spread over a random subset of the
// generated databases, with the odd marker block between records.
Bytes RandomBackup(std::uint64_t seed, std::size_t count) {
  RecordFaker faker(seed);
  IpdBuilder b;
  for (const char* name : kLargeBackupDatabases) b.Database(name);
  for (std::size_t i = 0; i < count; ++i) {
    const auto db = static_cast<std::uint16_t>(faker.Below(kLargeBackupDatabases.size()));
    const std::string_view name = kLargeBackupDatabases[db];
    Record r = name == "SMS Messages"        ? faker.Sms(db)
               : name == "Phone Call Logs"   ? faker.Call(db)
               : name.starts_with("Address") ? faker.Contact(db, name.ends_with("All"))
               : name.starts_with("Calendar") ? faker.Appointment(db, name.ends_with("All"))
               : name == "Memos"             ? faker.Memo(db)
               : name == "Tasks"             ? faker.Task(db)
               : name == "AutoText"          ? faker.AutoText(db)
               : name == "Service Book"      ? faker.ServiceBook(db)
                                             : faker.Opaque(db);
    b.Add(r);
    if (faker.Chance(5)) b.Raw(Hex(faker.Chance(50) ? "FFFF02000000" : "FFFF02000100"));
  }
  return b.Build();
}

// Ticks and unticks random nodes, as a user clicking about the tree would.
void ToggleRandomly(DatabaseTree& tree, RecordFaker& dice, int clicks) {
  for (int i = 0; i < clicks; ++i)
    ToggleNodeCheck(tree, static_cast<NodeId>(dice.Below(static_cast<std::uint32_t>(tree.size()))));
}

class WriterPathsTest : public EditingTest {};

TEST_F(WriterPathsTest, SplitEqualsTheHexTextBuildOnRandomBackupsAndSelections) {
  for (std::uint64_t seed = 1; seed <= 12; ++seed) {
    Open(RandomBackup(seed, 40 + 15 * seed), "open" + std::to_string(seed) + ".ipd");
    RecordFaker dice(seed * 7919);
    DatabaseTree selection = LoadSelectionTree(ws.tree());
    ToggleRandomly(selection, dice, static_cast<int>(1 + dice.Below(12)));
    const Bytes fast = BuildSplitFile(selection, ws.file().View());
    EXPECT_TRUE(fast == SplitByHex(selection, ws.file().View())) << "seed " << seed;
  }
}

// The records a written file holds, walked as the loader walks them.
std::size_t RecordsIn(const Bytes& file) {
  auto table = ReadNameTable(file);
  if (!table) return 0;
  std::size_t records = 0;
  if (!WalkRecords(file, table->recordsStart, [&](const RecordLocation&) { ++records; })) return 0;
  return records;
}

TEST_F(WriterPathsTest, SplitOfEveryNamedDatabaseCopiesEachOfItsRecords) {
  Open(RandomBackup(99, 300));
  // Every database that has a name entry, so the written name table is whole.
  DatabaseTree selection = LoadSelectionTree(ws.tree());
  std::size_t ticked = 0;
  selection.ForEachChild(selection.Root(), [&](NodeId db) {
    if (!SplitEntryHex(selection[db].text)) return;
    ToggleNodeCheck(selection, db);
    ticked += static_cast<std::size_t>(selection[db].childCount);
  });
  const Bytes fast = BuildSplitFile(selection, ws.file().View());
  EXPECT_TRUE(fast == SplitByHex(selection, ws.file().View()));
  EXPECT_GT(ticked, 100u);
  EXPECT_EQ(RecordsIn(fast), ticked);
}

TEST_F(WriterPathsTest, MergeEqualsTheHexTextBuildOnRandomBackupsAndSelections) {
  for (std::uint64_t seed = 1; seed <= 10; ++seed) {
    Open(RandomBackup(seed, 30 + 20 * seed), "first" + std::to_string(seed) + ".ipd");
    auto second = BrowseSecondFile(folder.Write("second" + std::to_string(seed) + ".ipd", RandomBackup(seed + 100, 60)),
                                   labeller);
    ASSERT_TRUE(second) << second.failure().message.text;
    RecordFaker dice(seed * 104729);
    DatabaseTree first = LoadSelectionTree(ws.tree());
    ToggleRandomly(first, dice, static_cast<int>(1 + dice.Below(10)));
    ToggleRandomly(second->tree, dice, static_cast<int>(1 + dice.Below(10)));
    const MergeSource a{first, ws.file().View()}, b{second->tree, second->bytes};
    EXPECT_TRUE(BuildMergedFile(a, b) == MergeByHex(a, b)) << "seed " << seed;
  }
}

TEST_F(WriterPathsTest, MergeOfAFileWithItselfHoldsEveryMergeableRecordTwice) {
  const Bytes bytes = RandomBackup(5, 200);
  Open(bytes);
  auto second = BrowseSecondFile(folder.Write("same.ipd", bytes), labeller);
  ASSERT_TRUE(second);
  DatabaseTree first = LoadSelectionTree(ws.tree());
  ToggleNodeCheck(first, first.Root());
  ToggleNodeCheck(second->tree, second->tree.Root());
  const MergeSource a{first, ws.file().View()}, b{second->tree, second->bytes};
  const Bytes merged = BuildMergedFile(a, b);
  ASSERT_TRUE(merged == MergeByHex(a, b));
  std::size_t mergeable = 0;
  ws.tree().ForEachChild(ws.tree().Root(), [&](NodeId db) {
    if (std::find(kMergeDatabaseNames.begin(), kMergeDatabaseNames.end(), ws.tree()[db].text) != kMergeDatabaseNames.end())
      mergeable += static_cast<std::size_t>(ws.tree()[db].childCount);
  });
  EXPECT_EQ(RecordsIn(merged), 2 * mergeable);
}

TEST_F(WriterPathsTest, TheCommandsWriteThroughTheirBufferTheBytesTheBuildersMake) {
  Open(RandomBackup(99, 300));
  auto second = BrowseSecondFile(folder.Write("second.ipd", RandomBackup(5, 200)), labeller);
  ASSERT_TRUE(second);
  RecordFaker dice(31337);
  DatabaseTree first = LoadSelectionTree(ws.tree());
  ToggleRandomly(first, dice, 8);
  ToggleRandomly(second->tree, dice, 8);
  const std::string split = folder.File("split.ipd"), merged = folder.File("merged.ipd");
  ASSERT_TRUE(Split(first, ws.file().View(), split));
  EXPECT_TRUE(ReadFile(split) == BuildSplitFile(first, ws.file().View()));
  const MergeSource a{first, ws.file().View()}, b{second->tree, second->bytes};
  ASSERT_TRUE(Merge(a, b, merged));
  EXPECT_TRUE(ReadFile(merged) == BuildMergedFile(a, b));
}

TEST_F(WriterPathsTest, ARecordOutsideTheFileStopsBothWritersBeforeAnythingIsBuilt) {
  Open(RandomBackup(3, 50));
  DatabaseTree selection = LoadSelectionTree(ws.tree());
  ToggleNodeCheck(selection, selection.Root());
  NodeId last = kNoNode;
  for (NodeId id = 0; id < static_cast<NodeId>(selection.size()); ++id)
    if (selection[id].tag) last = id;
  ASSERT_NE(last, kNoNode);
  selection[last].tag->last = static_cast<std::int64_t>(ws.file().bytes.size()) + 10;
  EXPECT_THROW(BuildSplitFile(selection, ws.file().View()), CommandError);
  const MergeSource a{selection, ws.file().View()};
  EXPECT_THROW(BuildMergedFile(a, a), CommandError);
  auto saved = Split(selection, ws.file().View(), folder.File("never.ipd"));
  ASSERT_FALSE(saved);
  EXPECT_FALSE(std::filesystem::exists(folder.File("never.ipd")));
}

}  // namespace
}  // namespace orchidlamp
