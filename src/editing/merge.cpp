#include "editing/merge.h"

#include <algorithm>
#include <vector>

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

// Calls `visit` with the tag of every record the merge takes from `source` for
// the database `name`, in the order they are written.
template <typename Visit>
void ForEachMergedRecord(const MergeSource& source, std::string_view name, Visit&& visit) {
  const std::string& rootText = RootText(source.tree);
  for (NodeId id = 0; id < static_cast<NodeId>(source.tree.size()); ++id) {
    const TreeNode& node = source.tree[id];
    // Records have no children: the cheap test first, a million times over.
    if (node.childCount == 0 || node.image == ImageKey::TickNone || node.text != name || node.text == rootText)
      continue;
    source.tree.ForEachChild(id, [&](NodeId child) {
      const TreeNode& record = source.tree[child];
      if (record.image == ImageKey::TickNone) return;
      visit(TagOf(record));
    });
  }
}

// The renumbered record appended to `out`, so the whole file is one buffer.
void AppendRenumbered(Bytes& out, const RecordSpan& tag, ByteView bytes, std::uint16_t databaseId,
                      std::uint32_t handle) {
  const ByteView part = CheckedRange(bytes, tag.first - 5, tag.last);
  AppendLE16(out, databaseId);
  AppendCut(out, part, 0, 5);                     // record length and version
  AppendLE16(out, handle & 0xFFFF);               // the source handle (bytes 5-6) is dropped
  AppendCut(out, part, 7, 4);                     // unique id
  AppendCut(out, part, 11, part.size());          // fields
}

void AppendDatabase(const MergeSource& first, const MergeSource& second, std::string_view name,
                    std::uint16_t databaseId, Bytes& out) {
  std::uint32_t handle = 1;
  for (const MergeSource* source : {&first, &second})
    ForEachMergedRecord(*source, name, [&](const RecordSpan& tag) {
      AppendRenumbered(out, tag, source->bytes, databaseId, handle++);
    });
}

// The records of one database: how many and, within a few bytes each, how long.
// Checks every range as the copy would, so a bad tag fails here first, with the
// same message.
struct DatabaseSize {
  std::size_t records = 0;
  std::size_t bytes = 0;
};

DatabaseSize SizeOfDatabase(const MergeSource& first, const MergeSource& second, std::string_view name) {
  DatabaseSize size;
  for (const MergeSource* source : {&first, &second})
    ForEachMergedRecord(*source, name, [&](const RecordSpan& tag) {
      ++size.records;
      size.bytes += CheckedRange(source->bytes, tag.first - 5, tag.last).size() + 4;
    });
  return size;
}

}  // namespace

Bytes RenumberRecord(const RecordSpan& tag, ByteView bytes, std::uint16_t databaseId, std::uint32_t handle) {
  Bytes out;
  out.reserve(static_cast<std::size_t>(std::max<std::int64_t>(tag.last - tag.first + 8, 0)));
  AppendRenumbered(out, tag, bytes, databaseId, handle);
  return out;
}

Bytes CollectDatabase(const MergeSource& first, const MergeSource& second, std::string_view name,
                      std::uint16_t databaseId) {
  Bytes out;
  AppendDatabase(first, second, name, databaseId, out);
  return out;
}

Bytes BuildMergedFile(const MergeSource& first, const MergeSource& second) {
  // Sized first, so the records are copied once, straight into the file.
  std::string nameTable;
  std::vector<std::string_view> written;
  std::size_t recordBytes = 0;
  for (std::string_view name : kMergeDatabaseNames) {
    const DatabaseSize size = SizeOfDatabase(first, second, name);
    if (size.records == 0) continue;
    nameTable += NameEntryHex(name);
    written.push_back(name);
    recordBytes += size.bytes;
  }
  const auto databaseCount = static_cast<std::uint16_t>(written.size());
  // The magic and version, the count as 16-bit big-endian, then the separator.
  const std::string header = std::string(kIpdPrefixHex.substr(0, kIpdPrefixHex.size() - 2)) +
                             ByteToHex(databaseCount >> 8) + ByteToHex(databaseCount) + "00";
  Bytes file = HexToBytes(header + nameTable);
  file.reserve(file.size() + recordBytes);
  for (std::uint16_t databaseId = 0; databaseId < databaseCount; ++databaseId)
    AppendDatabase(first, second, written[databaseId], databaseId, file);
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
