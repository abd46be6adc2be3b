#pragma once

// The split: the ticked databases and records of a selection tree written as a
// new IPD file.

#include <optional>
#include <string>

#include "core/bytes.h"
#include "core/database_tree.h"
#include "core/progress.h"
#include "core/result.h"

namespace orchidlamp {

inline constexpr std::string_view kSplitCompleteTitle = "Split is complete";

// The file's bytes. Walks `selection` in collection order: a ticked node with
// children is a database (its entry written when its name is one of the ten,
// the database counter raised either way); a ticked node without children is a
// record, copied whole from `loaded` with the low byte of its database id
// replaced by counter - 1. Throws CommandError when a tag lies outside `loaded`.
Bytes BuildSplitFile(const DatabaseTree& selection, ByteView loaded);

// The split command: builds the file, writes it over `path` from offset 0
// WITHOUT truncating (an existing longer file keeps its tail), and returns the
// "File saved as" message. An empty path is a cancelled dialog: nothing is
// written and there is no message. Nothing is written when building fails.
Result<std::optional<Message>> Split(const DatabaseTree& selection, ByteView loaded, const std::string& path,
                                     Progress* progress = nullptr);

}  // namespace orchidlamp
