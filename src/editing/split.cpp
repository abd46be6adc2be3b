#include "editing/split.h"

#include "core/file_io.h"
#include "core/hex_text.h"
#include "core/ipd_format.h"
#include "editing/byte_range.h"
#include "editing/database_entries.h"
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

}  // namespace

namespace {

void Put(Bytes& out, ByteView bytes) { out.insert(out.end(), bytes.begin(), bytes.end()); }
void Put(BufferedFileWriter& out, ByteView bytes) { out.Append(bytes); }

// The header and name table, and the records' size. Making it walks every
// record and checks its range, so a bad tag fails here, before anything is written.
struct SplitPlan {
  Bytes head;
  std::size_t recordBytes = 0;
};

SplitPlan PlanSplit(const DatabaseTree& selection, ByteView loaded) {
  SplitPlan plan;
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
void WriteSplit(const SplitPlan& plan, const DatabaseTree& selection, ByteView loaded, Out& out) {
  Put(out, plan.head);
  WalkSelection(
      selection, [](const std::string&) {},
      [&](const RecordSpan& tag, std::size_t at) {
        const std::uint8_t database = static_cast<std::uint8_t>(at - 1);
        Put(out, ByteView(&database, 1));
        Put(out, CheckedRange(loaded, tag.first - 6, tag.last));
      });
}

}  // namespace

Bytes BuildSplitFile(const DatabaseTree& selection, ByteView loaded) {
  const SplitPlan plan = PlanSplit(selection, loaded);
  Bytes file;
  file.reserve(plan.head.size() + plan.recordBytes);
  PreferHugePages(file.data(), file.capacity());
  WriteSplit(plan, selection, loaded, file);
  return file;
}

Result<std::optional<Message>> Split(const DatabaseTree& selection, ByteView loaded, const std::string& path) {
  if (path.empty()) return std::optional<Message>{};
  return Guarded([&]() -> Result<std::optional<Message>> {
    // Straight from the loaded file into the output through one small buffer:
    // the split file is never held whole.
    const SplitPlan plan = PlanSplit(selection, loaded);
    BufferedFileWriter out(path, BufferedFileWriter::Mode::InPlace);
    if (out.failure()) return *out.failure();
    WriteSplit(plan, selection, loaded, out);
    if (Status written = out.Finish(); !written) return written.failure();
    return std::optional<Message>{
        Message{"File saved as " + path, std::string(kSplitCompleteTitle), MessageIcon::Information}};
  });
}

}  // namespace orchidlamp
