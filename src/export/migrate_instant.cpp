#include "export/migrate_instant.h"

#include <chrono>
#include <cstdio>

namespace orchidlamp {
namespace {

constexpr std::int64_t kSecondsPerDay = 86400;
// 0100-01-01 and 10000-01-01 in seconds from 1970.
constexpr std::int64_t kFirstSecond = -59011459200;
constexpr std::int64_t kPastLastSecond = 253402300800;

std::optional<UtcDateTime> FromUnixSeconds(std::int64_t s) {
  if (s < kFirstSecond || s >= kPastLastSecond) return std::nullopt;
  std::int64_t days = s / kSecondsPerDay, rest = s % kSecondsPerDay;
  if (rest < 0) rest += kSecondsPerDay, --days;
  const std::chrono::year_month_day ymd{std::chrono::sys_days{std::chrono::days{days}}};
  UtcDateTime t;
  t.year = static_cast<int>(ymd.year());
  t.month = static_cast<int>(static_cast<unsigned>(ymd.month()));
  t.day = static_cast<int>(static_cast<unsigned>(ymd.day()));
  t.hour = static_cast<int>(rest / 3600);
  t.minute = static_cast<int>(rest / 60 % 60);
  t.second = static_cast<int>(rest % 60);
  return t;
}

}  // namespace

std::optional<UtcDateTime> FromUnixMilliseconds(std::int64_t ms) {
  // Floor, so an instant before 1970 keeps its second.
  std::int64_t s = ms / 1000;
  if (ms % 1000 < 0) --s;
  return FromUnixSeconds(s);
}

std::optional<UtcDateTime> FromUnixMinutes(std::int64_t minutes) {
  if (minutes < kFirstSecond / 60 - 1 || minutes > kPastLastSecond / 60 + 1) return std::nullopt;
  return FromUnixSeconds(minutes * 60);
}

std::string ReadableText(const UtcDateTime& t) {
  char text[32];
  std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d:%02d", t.year, t.month, t.day, t.hour, t.minute,
                t.second);
  return text;
}

std::string BasicUtcText(const UtcDateTime& t) {
  char text[32];
  std::snprintf(text, sizeof text, "%04d%02d%02dT%02d%02d%02dZ", t.year, t.month, t.day, t.hour, t.minute,
                t.second);
  return text;
}

}  // namespace orchidlamp
