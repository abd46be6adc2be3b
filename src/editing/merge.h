#pragma once

// The merge: the ticked databases of two selection trees joined, database by
// database in a fixed order, into a new IPD file.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "core/bytes.h"
#include "core/database_tree.h"
#include "core/progress.h"
#include "core/result.h"
#include "editing/merge_source.h"

namespace orchidlamp {

inline constexpr std::string_view kMergeCompleteTitle = " merging completed successfully";

// A record copied from the length field (first - 5) through `last`, renumbered:
// `databaseId` and `handle` as 16-bit little-endian, the length, version, unique
// id and fields unchanged. Handles beyond 16 bits keep their low 16 bits.
// Throws CommandError when the tag lies outside `bytes`.
Bytes RenumberRecord(const RecordSpan& tag, ByteView bytes, std::uint16_t databaseId, std::uint32_t handle);

// The file's bytes: the nine mergeable databases in their fixed order, each
// that collected something taking the next id. A database's records come from
// the ticked database nodes of its name in the first tree and then the second,
// every record not "None", with handles 1, 2, 3 ... over both.
Bytes BuildMergedFile(const MergeSource& first, const MergeSource& second);

// The merge command: writes over `path` from offset 0 without truncating and
// returns the "File saved as" message. An empty path writes nothing and has no
// message. Nothing is written when building fails.
Result<std::optional<Message>> Merge(const MergeSource& first, const MergeSource& second, const std::string& path,
                                     Progress* progress = nullptr);

}  // namespace orchidlamp
