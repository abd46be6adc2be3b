#include "records/record_date.h"

#include <array>
#include <cmath>

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

// "00" to "99", two characters each.
constexpr std::array<char, 200> kTwoDigits = [] {
  std::array<char, 200> digits{};
  for (int i = 0; i < 100; ++i) {
    digits[2 * i] = static_cast<char>('0' + i / 10);
    digits[2 * i + 1] = static_cast<char>('0' + i % 10);
  }
  return digits;
}();

// Writes a number below 100 as two digits.
void PutTwo(char* to, long long n) {
  to[0] = kTwoDigits[2 * static_cast<std::size_t>(n)];
  to[1] = kTwoDigits[2 * static_cast<std::size_t>(n) + 1];
}

}  // namespace

void AppendRecordDate(std::string& out, double count, double unitsPerDay, double timeZoneHours) {
  const double value = (kEpochDateValue + kFixedHours + timeZoneHours / 24.0) + count / unitsPerDay;
  const double seconds = std::floor(value * 86400.0 + 0.5);
  if (!std::isfinite(seconds) || seconds < kFirstSecond || seconds > kLastSecond) return;
  const auto s = static_cast<long long>(seconds);
  long long day = s / kDay;
  long long timeOfDay = s % kDay;
  if (timeOfDay < 0) timeOfDay += kDay, --day;
  long long year;
  unsigned month, dayOfMonth;
  // Date values count from 1899-12-30, which is 25569 days before 1970-01-01.
  CivilFromDays(day - 25569, year, month, dayOfMonth);
  // "YYYY-MM-DD HH:MM:SS"; the range check keeps the year within 100 to 9999,
  // always four digits.
  char text[19] = {0, 0, 0, 0, '-', 0, 0, '-', 0, 0, ' ', 0, 0, ':', 0, 0, ':', 0, 0};
  PutTwo(text, year / 100);
  PutTwo(text + 2, year % 100);
  PutTwo(text + 5, month);
  PutTwo(text + 8, dayOfMonth);
  if (timeOfDay == 0) {
    out.append(text, 10);
    return;
  }
  PutTwo(text + 11, timeOfDay / 3600);
  PutTwo(text + 14, timeOfDay / 60 % 60);
  PutTwo(text + 17, timeOfDay % 60);
  out.append(text, 19);
}

std::string RecordDateText(double count, double unitsPerDay, double timeZoneHours) {
  std::string text;
  AppendRecordDate(text, count, unitsPerDay, timeZoneHours);
  return text;
}

}  // namespace orchidlamp
