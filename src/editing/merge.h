#pragma once

// The merge: the ticked databases of two selection trees joined, database by
// database in a fixed order, into a new IPD file.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "core/bytes.h"
#include "core/database_tree.h"
#include "core/message.h"

namespace orchidlamp {

inline constexpr std::string_view kMergeCompleteTitle = " merging completed successfully";

// One side of the merge: a selection tree and the byte array its tags point into.
struct MergeSource {
  const DatabaseTree& tree;
  ByteView bytes;
};

// A record copied from the length field (first - 5) through `last`, renumbered:
// `databaseId` and `handle` as 16-bit little-endian, the length, version, unique
// id and fields unchanged. Handles beyond 16 bits keep their low 16 bits.
// Throws CommandError when the tag lies outside `bytes`.
Bytes RenumberRecord(const RecordSpan& tag, ByteView bytes, std::uint16_t databaseId, std::uint32_t handle);

// The records of the database named `name`, from the ticked database nodes of
// that name in the first tree and then the second, every record not "None",
// with handles 1, 2, 3 ... over both. Empty when nothing of it is ticked.
Bytes CollectDatabase(const MergeSource& first, const MergeSource& second, std::string_view name,
                      std::uint16_t databaseId);

// The file's bytes: the nine mergeable databases in their fixed order, each
// that collected something taking the next id.
Bytes BuildMergedFile(const MergeSource& first, const MergeSource& second);

// The merge command: writes over `path` from offset 0 without truncating and
// returns the "File saved as" message. An empty path writes nothing and has no
// message. Nothing is written when building fails.
Result<std::optional<Message>> Merge(const MergeSource& first, const MergeSource& second, const std::string& path);

}  // namespace orchidlamp
