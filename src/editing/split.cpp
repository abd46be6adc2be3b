#include "editing/split.h"

#include "core/hex_text.h"
#include "core/ipd_format.h"
#include "core/record_range.h"
#include "editing/database_entries.h"
#include "editing/planned_file.h"
#include "editing/selection_tree.h"

namespace orchidlamp {
namespace {

// Calls `database(text)` for every ticked database node and `record(tag, counter)`
// for every ticked record, in collection order, with the database counter as it
// stands at that record.
template <typename Database, typename Record>
void WalkSelection(const DatabaseTree& selection, Database&& database, Record&& record) {
  const std::string& rootText = RootText(selection);
  std::size_t counter = 0;
  for (const TreeNode& node : selection.nodes()) {
    if (node.image == ImageKey::TickNone || node.text == rootText) continue;
    if (node.childCount > 0) {
      database(node.text);
      // Counted even without an entry: the ids follow the ticked databases, not the written names.
      ++counter;
      continue;
    }
    record(TagOf(node), counter);
  }
}

// Making the plan walks every record and checks its range.
PlannedFile PlanSplit(const DatabaseTree& selection, ByteView loaded) {
  PlannedFile plan;
  std::string nameTable;
  std::size_t counter = 0;
  WalkSelection(
      selection,
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
void WriteSplit(const PlannedFile& plan, const DatabaseTree& selection, ByteView loaded, Out& out) {
  Append(out, plan.head);
  WalkSelection(
      selection, [](const std::string&) {},
      [&](const RecordSpan& tag, std::size_t at) {
        const std::uint8_t database = static_cast<std::uint8_t>(at - 1);
        Append(out, ByteView(&database, 1));
        Append(out, CheckedRange(loaded, tag.first - 6, tag.last));
      });
}

}  // namespace

Bytes BuildSplitFile(const DatabaseTree& selection, ByteView loaded) {
  const PlannedFile plan = PlanSplit(selection, loaded);
  return BuildPlanned(plan, [&](Bytes& out) { WriteSplit(plan, selection, loaded, out); });
}

Result<std::optional<Message>> Split(const DatabaseTree& selection, ByteView loaded, const std::string& path,
                                     Progress* progress) {
  return WritePlanned(
      path, kSplitCompleteTitle, [&] { return PlanSplit(selection, loaded); },
      [&](const PlannedFile& plan, BufferedFileWriter& out) { WriteSplit(plan, selection, loaded, out); }, progress);
}

}  // namespace orchidlamp
