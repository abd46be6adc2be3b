#pragma once

// Large, realistic backups for load tests and benchmarks: records of every kind
// in the proportions a well-used handheld holds (mostly SMS and calls, then
// contacts, calendar, memos, tasks), with UTF-16 texts, contact photos,
// embedded PNG icons and marker blocks. Everything follows from the seed: the
// same count and seed give the same bytes on every platform.

#include <array>
#include <cstdint>
#include <ostream>
#include <string>

#include "support/ipd_builder.h"

namespace orchidlamp::testing {

// Makes records of each kind from a seeded generator. Handles and unique ids
// count up, time stamps move forward.
class RecordFaker {
 public:
  explicit RecordFaker(std::uint64_t seed);

  Record Sms(std::uint16_t database);
  Record Call(std::uint16_t database);
  Record Contact(std::uint16_t database, bool nested);
  Record Appointment(std::uint16_t database, bool nested);
  Record Memo(std::uint16_t database);
  Record Task(std::uint16_t database);
  Record AutoText(std::uint16_t database);
  Record Bookmark(std::uint16_t database);
  Record ServiceBook(std::uint16_t database);
  Record Opaque(std::uint16_t database);

  std::uint64_t Next();
  // 0 .. bound - 1, the same on every platform (no std distributions).
  std::uint32_t Below(std::uint32_t bound);
  bool Chance(std::uint32_t percent) { return Below(100) < percent; }

 private:
  std::string Sentence(std::size_t minWords, std::size_t maxWords);
  std::string PhoneNumber();
  std::uint16_t NextHandle() { return handle_++; }
  std::uint32_t NextUid() { return uid_ += 1 + Below(977); }

  std::uint64_t state_;
  std::uint16_t handle_ = 1;
  std::uint32_t uid_ = 0x20000000;
  std::uint64_t clockMs_ = 1262304000000;  // 2010-01-01
};

// The databases of a generated backup, in name-table order.
inline constexpr std::array<const char*, 14> kLargeBackupDatabases = {
    "Address Book", "Address Book - All", "AutoText", "Browser Bookmarks", "Calendar",
    "Calendar - All", "Handheld Agent", "Memos", "Options", "Phone Call Logs",
    "SMS Messages", "Service Book", "Tasks", "WAP Push Messages",
};

// How many records each database of kLargeBackupDatabases gets for a total.
std::array<std::size_t, kLargeBackupDatabases.size()> LargeBackupPlan(std::size_t records);

// Streams a backup of `records` records to `out`, database by database; nothing
// but one record is held at a time. Returns the number of bytes written.
std::uint64_t WriteLargeBackup(std::ostream& out, std::size_t records, std::uint64_t seed);

}  // namespace orchidlamp::testing
