#pragma once

// Bounds-checked views of a loaded byte array by record positions. The tree's
// tags and the positions derived from them (a record's length field, its
// database id) are checked once here: a position outside the array stops the
// command (CommandError) before anything is written or shown.

#include <cstdint>

#include "core/bytes.h"
#include "core/database_tree.h"

namespace orchidlamp {

// The bytes [from, through]; empty when through == from - 1. Throws CommandError
// for anything outside `bytes` or running backwards further than that.
ByteView CheckedRange(ByteView bytes, std::int64_t from, std::int64_t through);

// The tag of a record node; CommandError when the node has none.
RecordSpan TagOf(const DatabaseTree& tree, NodeId node);

}  // namespace orchidlamp
