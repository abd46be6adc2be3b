#include "editing/split.h"

#include <algorithm>
#include <vector>

#include "core/hex_text.h"
#include "core/ipd_format.h"
#include "core/record_range.h"
#include "editing/database_entries.h"
#include "editing/planned_file.h"
#include "editing/selection_tree.h"

namespace orchidlamp {
namespace {

// The root is recognised by its text, so a record whose label reads as the
// root's text is passed over like the root. Labels are made once, while
// planning; the write skips the records the plan found.
struct SplitPlan : PlannedFile {
  std::vector<NodeId> rootLookalikes;  // ascending
};

// Calls `database(text)` for every ticked database node and `record(tag, counter)`
// for every ticked record, in collection order, with the database counter as it
// stands at that record. `isRoot(id)` tells the root apart.
template <typename IsRoot, typename Database, typename Record>
void WalkSelection(const DatabaseTree& selection, IsRoot&& isRoot, Database&& database, Record&& record) {
  std::size_t counter = 0;
  for (NodeId id = 0; id < static_cast<NodeId>(selection.size()); ++id) {
    if (selection.Image(id) == ImageKey::TickNone || isRoot(id)) continue;
    if (selection.ChildCount(id) > 0) {
      database(selection.Text(id));
      // Counted even without an entry: the ids follow the ticked databases, not the written names.
      ++counter;
      continue;
    }
    record(TagOf(selection, id), counter);
  }
}

// Making the plan walks every record and checks its range.
SplitPlan PlanSplit(const DatabaseTree& selection, ByteView loaded) {
  SplitPlan plan;
  const std::string rootText = RootText(selection);
  std::string nameTable;
  std::size_t counter = 0;
  WalkSelection(
      selection,
      [&](NodeId id) {
        if (selection.Text(id) != rootText) return false;
        if (selection.RecordKind(id)) plan.rootLookalikes.push_back(id);
        return true;
      },
      [&](const std::string& text) {
        if (auto entry = SplitEntryHex(text)) nameTable += *entry;
        ++counter;
      },
      [&](const RecordSpan& tag, std::size_t) {
        plan.recordBytes += CheckedRange(loaded, tag.first - 6, tag.last).size() + 1;
      });
  plan.head = HexToBytes(IpdHeaderHex(counter) + nameTable);
  return plan;
}

template <typename Out>
void WriteSplit(const SplitPlan& plan, const DatabaseTree& selection, ByteView loaded, Out& out) {
  const std::string rootText = RootText(selection);
  Append(out, plan.head);
  WalkSelection(
      selection,
      [&](NodeId id) {
        if (selection.RecordKind(id))
          return std::binary_search(plan.rootLookalikes.begin(), plan.rootLookalikes.end(), id);
        return selection.Text(id) == rootText;
      },
      [](const std::string&) {},
      [&](const RecordSpan& tag, std::size_t at) {
        const std::uint8_t database = static_cast<std::uint8_t>(at - 1);
        Append(out, ByteView(&database, 1));
        Append(out, CheckedRange(loaded, tag.first - 6, tag.last));
      });
}

}  // namespace

Bytes BuildSplitFile(const DatabaseTree& selection, ByteView loaded) {
  const SplitPlan plan = PlanSplit(selection, loaded);
  return BuildPlanned(plan, [&](Bytes& out) { WriteSplit(plan, selection, loaded, out); });
}

Result<std::optional<Message>> Split(const DatabaseTree& selection, ByteView loaded, const std::string& path,
                                     Progress* progress) {
  return WritePlanned(
      path, kSplitCompleteTitle, [&] { return PlanSplit(selection, loaded); },
      [&](const SplitPlan& plan, BufferedFileWriter& out) { WriteSplit(plan, selection, loaded, out); }, progress);
}

}  // namespace orchidlamp
