#include "editing/database_entries.h"

#include <algorithm>

#include "core/ipd_format.h"

namespace orchidlamp {

std::optional<std::string> SplitEntryHex(std::string_view name) {
  if (std::find(kSplitDatabaseNames.begin(), kSplitDatabaseNames.end(), name) == kSplitDatabaseNames.end())
    return std::nullopt;
  return NameEntryHex(name);
}

}  // namespace orchidlamp
