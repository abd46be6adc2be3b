#pragma once

// The database names the writers know, with their name-table entries. A name
// outside these lists is never written into a name table.

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace orchidlamp {

// The split knows ten names, AutoText among them.
inline constexpr std::array<std::string_view, 10> kSplitDatabaseNames = {
    "AutoText", "SMS Messages", "Address Book", "Address Book - All", "Memos",
    "Tasks",    "Calendar",     "Calendar - All", "Service Book", "Phone Call Logs"};

// The merge knows nine, and writes them in exactly this order whatever the trees'
// order. AutoText is never carried into a merged file.
inline constexpr std::array<std::string_view, 9> kMergeDatabaseNames = {
    "SMS Messages", "Address Book", "Address Book - All", "Memos",          "Tasks",
    "Calendar",     "Calendar - All", "Service Book",     "Phone Call Logs"};

// The name-table entry (hex) of one of the ten split names, matched exactly
// (case-sensitive, whole text); nullopt for any other name.
std::optional<std::string> SplitEntryHex(std::string_view name);

}  // namespace orchidlamp
