#include "records/record_date.h"

#include <gtest/gtest.h>

namespace orchidlamp {
namespace {

TEST(RecordDate, EveryDateCarriesThreeFixedHoursOnTopOfTheZone) {
  EXPECT_EQ(RecordDateText(0, kMillisecondsPerDay, 0), "1970-01-01 03:00:00");
  EXPECT_EQ(RecordDateText(0, kMillisecondsPerDay, 2), "1970-01-01 05:00:00");
  EXPECT_EQ(RecordDateText(0, kMillisecondsPerDay, 5.5), "1970-01-01 08:30:00");
  EXPECT_EQ(RecordDateText(0, kMillisecondsPerDay, 11), "1970-01-01 14:00:00");
}

TEST(RecordDate, MidnightShowsTheDateAlone) {
  EXPECT_EQ(RecordDateText(0, kMillisecondsPerDay, -3), "1970-01-01");
  EXPECT_EQ(RecordDateText(0, kMinutesPerDay, -5), "1969-12-31 22:00:00");
}

TEST(RecordDate, MinutesAndMillisecondsRoundToTheNearestSecond) {
  EXPECT_EQ(RecordDateText(1440, kMinutesPerDay, 0), "1970-01-02 03:00:00");
  EXPECT_EQ(RecordDateText(1499, kMillisecondsPerDay, 0), "1970-01-01 03:00:01");
  EXPECT_EQ(RecordDateText(1500, kMillisecondsPerDay, 0), "1970-01-01 03:00:02");
  EXPECT_EQ(RecordDateText(1141889639000.0, kMillisecondsPerDay, 0), "2006-03-09 10:33:59");
  EXPECT_EQ(RecordDateText(-1440.0 * 365, kMinutesPerDay, 0), "1969-01-01 03:00:00");
}

TEST(RecordDate, DatesOutsideYears100To9999AreEmpty) {
  // The largest 48-bit stamp lies beyond 9999 and converts without overflow.
  EXPECT_EQ(RecordDateText(281474976710655.0, kMillisecondsPerDay, 0), "");
  EXPECT_EQ(RecordDateText(-1e18, kMillisecondsPerDay, 0), "");
  EXPECT_EQ(RecordDateText(253402300799000.0 - 3 * 3600000.0, kMillisecondsPerDay, 0), "9999-12-31 23:59:59");
  EXPECT_EQ(RecordDateText(253402300800000.0 - 3 * 3600000.0, kMillisecondsPerDay, 0), "");
}

}  // namespace
}  // namespace orchidlamp
