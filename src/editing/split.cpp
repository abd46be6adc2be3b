#include "editing/split.h"

#include "core/file_io.h"
#include "core/hex_text.h"
#include "core/ipd_format.h"
#include "editing/byte_range.h"
#include "editing/database_entries.h"
#include "editing/selection_tree.h"

namespace orchidlamp {

Bytes BuildSplitFile(const DatabaseTree& selection, ByteView loaded) {
  const std::string& rootText = RootText(selection);
  std::string nameTable;
  Bytes records;
  std::size_t counter = 0;
  for (const TreeNode& node : selection.nodes()) {
    if (node.image == ImageKey::TickNone || node.text == rootText) continue;
    if (node.childCount > 0) {
      if (auto entry = SplitEntryHex(node.text)) nameTable += *entry;
      // Counted even without an entry: the ids follow the ticked databases, not the written names.
      ++counter;
      continue;
    }
    const RecordSpan& tag = TagOf(node);
    const ByteView copied = CheckedRange(loaded, tag.first - 6, tag.last);
    records.push_back(static_cast<std::uint8_t>(counter - 1));
    records.insert(records.end(), copied.begin(), copied.end());
  }
  Bytes file = HexToBytes(IpdHeaderHex(counter) + nameTable);
  file.insert(file.end(), records.begin(), records.end());
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
