#pragma once

// The database kinds the program understands, recognised by exact, case-sensitive
// names. The enum value is the kind's slot in the database index.

#include <array>
#include <optional>
#include <string_view>

namespace orchidlamp {

enum class Kind : int {
  BrowserBookmarks = 0,
  AutoText = 1,
  SmsMessages = 2,
  AddressBookAll = 3,
  AddressBook = 4,
  Memos = 5,
  Tasks = 6,
  CalendarAll = 7,
  Calendar = 8,
  ServiceBook = 9,
  PhoneCallLogs = 10,
};
inline constexpr int kKindCount = 11;

// What the loader needs of a kind: its database name. Everything else a kind
// does is described in records/record_kinds.h.
struct KindInfo {
  Kind kind;
  std::string_view name;
};

const KindInfo& InfoOf(Kind kind);
std::optional<Kind> KindByName(std::string_view cleanedName);

// Name-table matching runs in this order; a later database of the same name wins.
inline constexpr std::array<Kind, kKindCount> kNameMatchOrder = {
    Kind::BrowserBookmarks, Kind::AutoText, Kind::SmsMessages, Kind::AddressBook, Kind::AddressBookAll,
    Kind::Memos, Kind::Tasks, Kind::Calendar, Kind::CalendarAll, Kind::ServiceBook, Kind::PhoneCallLogs};

// A record's kind is the first slot in this order that holds its database id.
// Slot 0 comes right after the service book: with slots 0 and 1 never reset, a
// file without bookmarks shows database 0's records as bookmarks.
inline constexpr std::array<Kind, kKindCount> kRecordSlotOrder = {
    Kind::ServiceBook, Kind::BrowserBookmarks, Kind::AutoText, Kind::SmsMessages, Kind::AddressBookAll,
    Kind::AddressBook, Kind::Memos, Kind::Tasks, Kind::Calendar, Kind::CalendarAll, Kind::PhoneCallLogs};

}  // namespace orchidlamp
