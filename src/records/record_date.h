#pragma once

#include <string>

namespace orchidlamp {

inline constexpr double kMillisecondsPerDay = 86400000.0;
inline constexpr double kMinutesPerDay = 1440.0;

// A time stamp counted from 1970-01-01 00:00 as display text: "YYYY-MM-DD
// HH:MM:SS" to the nearest second, "YYYY-MM-DD" alone at midnight, empty when
// the date falls outside the years 100 to 9999. Every date carries a fixed three
// hours on top of the time-zone hours, deliberately: it is what users see.
std::string RecordDateText(double count, double unitsPerDay, double timeZoneHours);
// The same text appended to `out`.
void AppendRecordDate(std::string& out, double count, double unitsPerDay, double timeZoneHours);

}  // namespace orchidlamp
