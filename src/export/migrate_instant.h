#pragma once

// True instants for the migration files: the stored counts are UTC, so no
// display shift and no time-zone setting enters here.

#include <cstdint>
#include <optional>
#include <string>

namespace orchidlamp {

struct UtcDateTime {
  int year = 1970, month = 1, day = 1, hour = 0, minute = 0, second = 0;
};

// Milliseconds or minutes since 1970-01-01 00:00 UTC as a calendar date-time;
// nothing outside the years 100 to 9999, where the display shows nothing either.
std::optional<UtcDateTime> FromUnixMilliseconds(std::int64_t ms);
std::optional<UtcDateTime> FromUnixMinutes(std::int64_t minutes);

// "YYYY-MM-DD HH:MM:SS".
std::string ReadableText(const UtcDateTime& t);
// "YYYYMMDDTHHMMSSZ".
std::string BasicUtcText(const UtcDateTime& t);

}  // namespace orchidlamp
