#include "records/record_date.h"

#include <gtest/gtest.h>

namespace orchidlamp {
namespace {

struct DateCase {
  double count, unitsPerDay, timeZoneHours;
  std::string expected;
};

constexpr double kMs = kMillisecondsPerDay, kMin = kMinutesPerDay;
constexpr double kThreeHours = 3 * 3600000.0;

TEST(RecordDate, ThreeFixedHoursRoundingMidnightAndTheYearRange) {
  const std::vector<DateCase> cases = {
      // Every date carries three fixed hours on top of the zone; midnight shows the date alone.
      {0, kMs, 0, "1970-01-01 03:00:00"}, {0, kMs, 5.5, "1970-01-01 08:30:00"}, {0, kMs, 11, "1970-01-01 14:00:00"},
      {0, kMs, -3, "1970-01-01"},         {0, kMin, -5, "1969-12-31 22:00:00"},
      // Minutes and milliseconds round to the nearest second.
      {1440, kMin, 0, "1970-01-02 03:00:00"}, {1499, kMs, 0, "1970-01-01 03:00:01"},
      {1500, kMs, 0, "1970-01-01 03:00:02"},  {1141889639000.0, kMs, 0, "2006-03-09 10:33:59"},
      {-1440.0 * 365, kMin, 0, "1969-01-01 03:00:00"},
      // Outside the years 100 to 9999 a date is empty; the largest 48-bit stamp
      // lies beyond and converts without overflow.
      {281474976710655.0, kMs, 0, ""}, {-1e18, kMs, 0, ""},
      {253402300799000.0 - kThreeHours, kMs, 0, "9999-12-31 23:59:59"}, {253402300800000.0 - kThreeHours, kMs, 0, ""},
      {-59011459200000.0 - kThreeHours, kMs, 0, "0100-01-01"}, {-59011459201000.0 - kThreeHours, kMs, 0, ""},
  };
  for (const DateCase& c : cases)
    EXPECT_EQ(RecordDateText(c.count, c.unitsPerDay, c.timeZoneHours), c.expected) << c.count;
}

}  // namespace
}  // namespace orchidlamp
