#include "editing/merge_source.h"

#include <algorithm>
#include <array>
#include <optional>
#include <vector>

#include "core/file_io.h"
#include "core/ipd_format.h"
#include "core/kinds.h"
#include "core/workspace.h"
#include "editing/database_entries.h"
#include "editing/selection_tree.h"

namespace orchidlamp {
namespace {

bool IsMergeable(std::string_view name) {
  return std::find(kMergeDatabaseNames.begin(), kMergeDatabaseNames.end(), name) != kMergeDatabaseNames.end();
}

}  // namespace

Result<SecondFile> LoadSecondFile(const std::string& path, const RecordLabeller& labeller) {
  auto read = ReadWholeFile(path);
  if (!read) return read.failure();
  SecondFile second;
  second.path = path;
  second.bytes = std::move(read.value());
  const ByteView bytes = second.bytes;
  DatabaseTree& tree = second.tree;
  tree.SetLabelSource(&labeller, bytes);
  const NodeId root = tree.Add(kNoNode, std::string(kRootKey), path, ImageKey::None);

  auto table = ReadNameTable(bytes);
  if (!table) return table.failure();

  // Slot per kind, by exact name; a later database of the same name wins.
  std::array<std::int64_t, kKindCount> slots;
  slots.fill(-1);
  std::vector<NodeId> databaseNodes(table->entries.size(), kNoNode);
  for (std::size_t i = 0; i < table->entries.size(); ++i) {
    const std::string& name = table->entries[i].cleaned;
    if (!IsMergeable(name)) continue;
    slots[static_cast<std::size_t>(*KindByName(name))] = static_cast<std::int64_t>(i);
    databaseNodes[i] = tree.Add(root, std::to_string(i) + std::string(kDatabaseKeySuffix), name, ImageKey::None);
  }
  auto kindOf = [&](std::uint32_t databaseId) -> std::optional<Kind> {
    for (Kind kind : kRecordSlotOrder)
      if (slots[static_cast<std::size_t>(kind)] == static_cast<std::int64_t>(databaseId)) return kind;
    return std::nullopt;
  };

  ReserveRecordNodes(tree, bytes, table->recordsStart, databaseNodes,
                     [&](std::uint32_t id) { return kindOf(id).has_value(); });

  const RecordWalk walked = WalkRecords(bytes, table->recordsStart, [&](const RecordLocation& r) {
    const auto kind = kindOf(r.databaseId);
    if (!kind) return;
    tree.AddRecord(databaseNodes[r.databaseId], *kind, r.Span());
  });
  if (!walked) return *walked.failure;
  return second;
}

Result<SecondFile> BrowseSecondFile(const std::string& path, const RecordLabeller& labeller) {
  auto loaded = LoadSecondFile(path, labeller);
  if (!loaded) return loaded;
  DatabaseTree& tree = loaded->tree;
  tree.SetImage(tree.Root(), ImageKey::TickNone);
  SetChildrenCheck(tree, tree.Root());
  return loaded;
}

}  // namespace orchidlamp
