#include "editing/merge.h"

#include "core/file_io.h"
#include "core/hex_text.h"
#include "core/ipd_format.h"
#include "editing/byte_range.h"
#include "editing/database_entries.h"
#include "editing/selection_tree.h"

namespace orchidlamp {
namespace {

void AppendLE16(Bytes& out, std::uint32_t value) {
  out.push_back(static_cast<std::uint8_t>(value));
  out.push_back(static_cast<std::uint8_t>(value >> 8));
}

// Appends bytes [from, from + count) of `part`, what exists of them, as the
// record's text is cut by position.
void AppendCut(Bytes& out, ByteView part, std::size_t from, std::size_t count) {
  const ByteView cut = ClippedSub(part, from, count);
  out.insert(out.end(), cut.begin(), cut.end());
}

void CollectFrom(const MergeSource& source, std::string_view name, std::uint16_t databaseId, std::uint32_t& handle,
                 Bytes& out) {
  const std::string& rootText = RootText(source.tree);
  for (NodeId id = 0; id < static_cast<NodeId>(source.tree.size()); ++id) {
    const TreeNode& node = source.tree[id];
    if (node.image == ImageKey::TickNone || node.text == rootText || node.text != name || node.childCount == 0)
      continue;
    source.tree.ForEachChild(id, [&](NodeId child) {
      const TreeNode& record = source.tree[child];
      if (record.image == ImageKey::TickNone) return;
      const Bytes renumbered = RenumberRecord(TagOf(record), source.bytes, databaseId, handle++);
      out.insert(out.end(), renumbered.begin(), renumbered.end());
    });
  }
}

}  // namespace

Bytes RenumberRecord(const RecordSpan& tag, ByteView bytes, std::uint16_t databaseId, std::uint32_t handle) {
  const ByteView part = CheckedRange(bytes, tag.first - 5, tag.last);
  Bytes out;
  out.reserve(part.size() + 2);
  AppendLE16(out, databaseId);
  AppendCut(out, part, 0, 5);                     // record length and version
  AppendLE16(out, handle & 0xFFFF);               // the source handle (bytes 5-6) is dropped
  AppendCut(out, part, 7, 4);                     // unique id
  AppendCut(out, part, 11, part.size());          // fields
  return out;
}

Bytes CollectDatabase(const MergeSource& first, const MergeSource& second, std::string_view name,
                      std::uint16_t databaseId) {
  Bytes out;
  std::uint32_t handle = 1;
  CollectFrom(first, name, databaseId, handle, out);
  CollectFrom(second, name, databaseId, handle, out);
  return out;
}

Bytes BuildMergedFile(const MergeSource& first, const MergeSource& second) {
  std::string nameTable;
  Bytes records;
  std::uint16_t databaseId = 0;
  for (std::string_view name : kMergeDatabaseNames) {
    const Bytes collected = CollectDatabase(first, second, name, databaseId);
    if (collected.empty()) continue;
    nameTable += NameEntryHex(name);
    records.insert(records.end(), collected.begin(), collected.end());
    ++databaseId;
  }
  // The magic and version, the count as 16-bit big-endian, then the separator.
  const std::string header = std::string(kIpdPrefixHex.substr(0, kIpdPrefixHex.size() - 2)) +
                             ByteToHex(databaseId >> 8) + ByteToHex(databaseId) + "00";
  Bytes file = HexToBytes(header + nameTable);
  file.insert(file.end(), records.begin(), records.end());
  return file;
}

Result<std::optional<Message>> Merge(const MergeSource& first, const MergeSource& second, const std::string& path) {
  if (path.empty()) return std::optional<Message>{};
  return Guarded([&]() -> Result<std::optional<Message>> {
    const Bytes file = BuildMergedFile(first, second);
    if (Status written = WriteInPlace(path, file); !written) return written.failure();
    return std::optional<Message>{
        Message{"File saved as " + path, std::string(kMergeCompleteTitle), MessageIcon::Information}};
  });
}

}  // namespace orchidlamp
