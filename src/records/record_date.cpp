#include "records/record_date.h"

#include <cmath>
#include <cstdio>

namespace orchidlamp {
namespace {

// Days from 1970-01-01 to a civil date (proleptic Gregorian).
void CivilFromDays(long long z, long long& y, unsigned& m, unsigned& d) {
  z += 719468;
  const long long era = (z >= 0 ? z : z - 146096) / 146097;
  const unsigned doe = static_cast<unsigned>(z - era * 146097);
  const unsigned yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
  y = static_cast<long long>(yoe) + era * 400;
  const unsigned doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
  const unsigned mp = (5 * doy + 2) / 153;
  d = doy - (153 * mp + 2) / 5 + 1;
  m = mp < 10 ? mp + 3 : mp - 9;
  y += m <= 2;
}

constexpr long long kDay = 86400;
constexpr double kEpochDateValue = 25569.0;    // 1970-01-01 as a date value
constexpr double kFixedHours = 0.125;          // three hours, part of every date
constexpr double kFirstSecond = -657434.0 * kDay;   // 0100-01-01 00:00:00
constexpr double kLastSecond = 2958466.0 * kDay - 1;  // 9999-12-31 23:59:59

}  // namespace

std::string RecordDateText(double count, double unitsPerDay, double timeZoneHours) {
  const double value = (kEpochDateValue + kFixedHours + timeZoneHours / 24.0) + count / unitsPerDay;
  const double seconds = std::floor(value * 86400.0 + 0.5);
  if (!std::isfinite(seconds) || seconds < kFirstSecond || seconds > kLastSecond) return {};
  const auto s = static_cast<long long>(seconds);
  long long day = s / kDay;
  long long timeOfDay = s % kDay;
  if (timeOfDay < 0) timeOfDay += kDay, --day;
  long long year;
  unsigned month, dayOfMonth;
  // Date values count from 1899-12-30, which is 25569 days before 1970-01-01.
  CivilFromDays(day - 25569, year, month, dayOfMonth);
  char text[64];
  if (timeOfDay == 0) {
    std::snprintf(text, sizeof text, "%04lld-%02u-%02u", year, month, dayOfMonth);
  } else {
    std::snprintf(text, sizeof text, "%04lld-%02u-%02u %02lld:%02lld:%02lld", year, month, dayOfMonth,
                  timeOfDay / 3600, timeOfDay / 60 % 60, timeOfDay % 60);
  }
  return text;
}

}  // namespace orchidlamp
