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

Bytes BuildSplitFile(const DatabaseTree& selection, ByteView loaded) {
  // First the sizes and the name table, checking every range as the copy does;
  // then the records go once, straight into the file's single buffer.
  std::string nameTable;
  std::size_t counter = 0;
  std::size_t recordBytes = 0;
  WalkSelection(
      selection,
      [&](const std::string& text) {
        if (auto entry = SplitEntryHex(text)) nameTable += *entry;
        ++counter;
      },
      [&](const RecordSpan& tag, std::size_t) { recordBytes += CheckedRange(loaded, tag.first - 6, tag.last).size() + 1; });
  Bytes file = HexToBytes(IpdHeaderHex(counter) + nameTable);
  file.reserve(file.size() + recordBytes);
  WalkSelection(
      selection, [](const std::string&) {},
      [&](const RecordSpan& tag, std::size_t at) {
        const ByteView copied = CheckedRange(loaded, tag.first - 6, tag.last);
        file.push_back(static_cast<std::uint8_t>(at - 1));
        file.insert(file.end(), copied.begin(), copied.end());
      });
  return file;
}

Result<std::optional<Message>> Split(const DatabaseTree& selection, ByteView loaded, const std::string& path) {
  if (path.empty()) return std::optional<Message>{};
  return Guarded([&]() -> Result<std::optional<Message>> {
    const Bytes file = BuildSplitFile(selection, loaded);
    if (Status written = WriteInPlace(path, file); !written) return written.failure();
    return std::optional<Message>{
        Message{"File saved as " + path, std::string(kSplitCompleteTitle), MessageIcon::Information}};
  });
}

}  // namespace orchidlamp
