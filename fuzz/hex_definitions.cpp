#include "hex_definitions.h"

#include <string>
#include <string_view>

#include "core/hex_text.h"
#include "core/ipd_format.h"
#include "editing/database_entries.h"
#include "editing/selection_tree.h"

namespace orchidlamp::fuzz {
namespace {

// Hex digits [from, from + count) of `hex`, what exists of them.
std::string Cut(std::string_view hex, std::size_t from, std::size_t count) {
  return from >= hex.size() ? std::string() : std::string(hex.substr(from, count));
}

// Bytes [from, through] of the file as hex.
std::string RangeHex(std::string_view fileHex, std::int64_t from, std::int64_t through) {
  return Cut(fileHex, static_cast<std::size_t>(2 * from), static_cast<std::size_t>(2 * (through - from + 1)));
}

std::uint32_t HexLE(std::string_view hex, std::size_t at, std::size_t bytes) {
  std::uint32_t value = 0;
  for (std::size_t i = bytes; i-- > 0;)
    value = value * 256 + static_cast<std::uint32_t>(HexToLong(hex.substr(2 * (at + i), 2)) & 0xFF);
  return value;
}

bool MarkerHexAt(std::string_view hex, std::size_t at, std::string_view last) {
  return hex.size() >= 2 * (at + 5) && hex.substr(2 * at, 10) == std::string("FFFF0200") + std::string(last);
}

// The desktop software's walk over the hex: calls record(p, databaseOrX, length)
// and returns false where a record runs past the end or record() refuses.
template <typename Record>
bool WalkHex(std::string_view hex, std::size_t p, Record&& record) {
  const std::size_t size = hex.size() / 2;
  while (p < size) {
    if (size - p < 6) return false;
    const std::uint32_t x = HexLE(hex, p, 2), length = HexLE(hex, p + 2, 4);
    if (length > size - p - 6 || !record(p, x, length)) return false;
    p += 6 + std::size_t{length};
    if (p < size - 1) {
      if (MarkerHexAt(hex, p, "00")) p += 6;
      if (MarkerHexAt(hex, p, "01")) p += 6;
    }
  }
  return true;
}

}  // namespace

Bytes SplitByHex(const DatabaseTree& selection, ByteView loaded) {
  const std::string fileHex = BytesToHex(loaded);
  const std::string rootText = RootText(selection);
  std::string names, records;
  std::size_t counter = 0;
  for (NodeId id = 0; id < static_cast<NodeId>(selection.size()); ++id) {
    if (selection.Image(id) == ImageKey::TickNone || selection.Text(id) == rootText) continue;
    if (selection.ChildCount(id) > 0) {
      if (auto entry = SplitEntryHex(selection.Text(id))) names += *entry;
      ++counter;
      continue;
    }
    const RecordSpan tag = *selection.Tag(id);
    records += ByteToHex(static_cast<std::int64_t>(counter) - 1) + RangeHex(fileHex, tag.first - 6, tag.last);
  }
  return HexToBytes(IpdHeaderHex(counter) + names + records);
}

Bytes MergeByHex(const MergeSource& first, const MergeSource& second) {
  const std::string firstHex = BytesToHex(first.bytes), secondHex = BytesToHex(second.bytes);
  std::string names, records;
  std::uint32_t databaseId = 0;
  for (std::string_view name : kMergeDatabaseNames) {
    std::string collected;
    std::uint32_t handle = 1;
    for (const auto& sourceAndHex : {std::pair{&first, &firstHex}, std::pair{&second, &secondHex}}) {
      const DatabaseTree& tree = sourceAndHex.first->tree;
      const std::string* hex = sourceAndHex.second;  // a lambda below reads it: no structured binding
      for (NodeId id = 0; id < static_cast<NodeId>(tree.size()); ++id) {
        if (tree.Image(id) == ImageKey::TickNone || tree.Text(id) == RootText(tree) || tree.Text(id) != name) continue;
        if (tree.ChildCount(id) == 0) continue;
        tree.ForEachChild(id, [&](NodeId child) {
          if (tree.Image(child) == ImageKey::TickNone) return;
          // Length and version, the new handle, the unique id, the fields.
          const RecordSpan tag = *tree.Tag(child);
          const std::string part = RangeHex(*hex, tag.first - 5, tag.last);
          collected += ByteToHex(databaseId) + ByteToHex(databaseId >> 8) + Cut(part, 0, 10) + ByteToHex(handle) +
                       ByteToHex(handle >> 8) + Cut(part, 14, 8) + Cut(part, 22, part.size());
          ++handle;
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

std::optional<std::vector<Bytes>> DatsByHex(ByteView ipd) {
  const std::string hex = BytesToHex(ipd);
  auto table = ReadNameTable(ipd);
  if (!table) return std::nullopt;
  std::vector<std::string> dats;
  for (const NameEntry& entry : table->entries)
    dats.push_back(IpdHeaderHex(1) + hex.substr(2 * entry.offset, 2 * (2 + entry.length)));
  const bool whole = WalkHex(hex, table->recordsStart, [&](std::size_t p, std::uint32_t database, std::uint32_t n) {
    if (database >= dats.size()) return false;
    const std::uint32_t k = database + 1;
    dats[database] += ByteToHex(k) + ByteToHex(k >> 8) + hex.substr(2 * (p + 2), 2 * (4 + std::size_t{n}));
    return true;
  });
  if (!whole) return std::nullopt;
  std::vector<Bytes> out;
  for (const std::string& dat : dats) out.push_back(HexToBytes(dat));
  return out;
}

std::optional<std::pair<Bytes, Bytes>> DatPartsByHex(ByteView dat) {
  const std::string hex = BytesToHex(dat);
  if (dat.size() < kIpdHeaderSize + 2) return std::nullopt;
  const std::uint32_t nameLength = HexLE(hex, kIpdHeaderSize, 2);
  if (dat.size() - kIpdHeaderSize - 2 < nameLength) return std::nullopt;
  std::string records;
  const std::size_t start = kIpdHeaderSize + 2 + nameLength;
  const bool whole = WalkHex(hex, start, [&](std::size_t p, std::uint32_t x, std::uint32_t n) {
    records += ByteToHex(x - 1) + ByteToHex((x - 1) >> 8) + hex.substr(2 * (p + 2), 2 * (4 + std::size_t{n}));
    return true;
  });
  if (!whole) return std::nullopt;
  return std::pair{HexToBytes(hex.substr(2 * kIpdHeaderSize, 2 * (2 + nameLength))), HexToBytes(records)};
}

}  // namespace orchidlamp::fuzz
