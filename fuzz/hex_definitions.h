#pragma once

// The writers and the .dat reader as they are defined: on hex text cut by
// position, one record after another. The real code copies bytes straight
// between buffers; the fuzz targets require it to give exactly these bytes.

#include <optional>
#include <vector>

#include "core/bytes.h"
#include "core/database_tree.h"
#include "editing/merge_source.h"

namespace orchidlamp::fuzz {

Bytes SplitByHex(const DatabaseTree& selection, ByteView loaded);
Bytes MergeByHex(const MergeSource& first, const MergeSource& second);
// Each database's .dat: the one-database header, the name entry, the records
// numbered k = index + 1, the 00 then 01 marker blocks dropped. nullopt where
// the walk stops (a record past the end or of an unlisted database).
std::optional<std::vector<Bytes>> DatsByHex(ByteView ipd);
// What a .dat adds: its name entry and its records renumbered x - 1 with the
// same marker blocks dropped; nullopt when a length runs past the end.
std::optional<std::pair<Bytes, Bytes>> DatPartsByHex(ByteView dat);

}  // namespace orchidlamp::fuzz
