#include "editing/merge.h"

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

template <typename Out>
void AppendLE16(Out& out, std::uint32_t value) {
  const std::uint8_t bytes[2] = {static_cast<std::uint8_t>(value), static_cast<std::uint8_t>(value >> 8)};
  Append(out, bytes);
}

// Appends bytes [from, from + count) of `part`, what exists of them, as the
// record's text is cut by position.
template <typename Out>
void AppendCut(Out& out, ByteView part, std::size_t from, std::size_t count) {
  Append(out, ClippedSub(part, from, count));
}

// Calls `visit` with the tag of every record the merge takes from `source` for
// the database `name`, in the order they are written.
template <typename Visit>
void ForEachMergedRecord(const MergeSource& source, std::string_view name, Visit&& visit) {
  const DatabaseTree& tree = source.tree;
  const std::string rootText = RootText(tree);
  for (NodeId id : tree.OwnNodes()) {
    if (tree.ChildCount(id) == 0 || tree.Image(id) == ImageKey::TickNone) continue;
    if (const std::string text = tree.Text(id); text != name || text == rootText) continue;
    for (NodeId child : tree.Children(id))
      if (tree.Image(child) != ImageKey::TickNone) visit(TagOf(tree, child));
  }
}

// The renumbered record appended to `out`.
template <typename Out>
void AppendRenumbered(Out& out, const RecordSpan& tag, ByteView bytes, std::uint16_t databaseId,
                      std::uint32_t handle) {
  const ByteView part = CheckedRange(bytes, tag.first - 5, tag.last);
  AppendLE16(out, databaseId);
  AppendCut(out, part, 0, 5);                     // record length and version
  AppendLE16(out, handle & 0xFFFF);               // the source handle (bytes 5-6) is dropped
  AppendCut(out, part, 7, 4);                     // unique id
  AppendCut(out, part, 11, part.size());          // fields
}

template <typename Out>
void AppendDatabase(const MergeSource& first, const MergeSource& second, std::string_view name,
                    std::uint16_t databaseId, Out& out) {
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

namespace {

// What goes into the file before the records are copied: the header and name
// table, and the databases written, in order. Making it walks every record
// and checks its range, so a bad tag fails here, before anything is written.
struct MergePlan : PlannedFile {
  std::vector<std::string_view> databases;
};

MergePlan PlanMerge(const MergeSource& first, const MergeSource& second) {
  MergePlan plan;
  std::string nameTable;
  for (std::string_view name : kMergeDatabaseNames) {
    const DatabaseSize size = SizeOfDatabase(first, second, name);
    if (size.records == 0) continue;
    nameTable += NameEntryHex(name);
    plan.databases.push_back(name);
    plan.recordBytes += size.bytes;
  }
  const auto databaseCount = static_cast<std::uint16_t>(plan.databases.size());
  // The magic and version, the count as 16-bit big-endian, then the separator.
  const std::string header = std::string(kIpdPrefixHex.substr(0, kIpdPrefixHex.size() - 2)) +
                             ByteToHex(databaseCount >> 8) + ByteToHex(databaseCount) + "00";
  plan.head = HexToBytes(header + nameTable);
  return plan;
}

template <typename Out>
void WriteMerged(const MergePlan& plan, const MergeSource& first, const MergeSource& second, Out& out) {
  Append(out, plan.head);
  for (std::size_t id = 0; id < plan.databases.size(); ++id)
    AppendDatabase(first, second, plan.databases[id], static_cast<std::uint16_t>(id), out);
}

}  // namespace

Bytes BuildMergedFile(const MergeSource& first, const MergeSource& second) {
  const MergePlan plan = PlanMerge(first, second);
  return BuildPlanned(plan, [&](Bytes& out) { WriteMerged(plan, first, second, out); });
}

Result<std::optional<Message>> Merge(const MergeSource& first, const MergeSource& second, const std::string& path,
                                     Progress* progress) {
  return WritePlanned(
      path, kMergeCompleteTitle, [&] { return PlanMerge(first, second); },
      [&](const MergePlan& plan, BufferedFileWriter& out) { WriteMerged(plan, first, second, out); }, progress);
}

}  // namespace orchidlamp
