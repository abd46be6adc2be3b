#include "export/migrate_instant.h"

#include <array>
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

// Every message, call and appointment has a date: its digits go into the
// pattern by hand, as printf's %04d and %02d would give them, for the fields
// within those widths; nullopt for others.
std::optional<std::string> InPattern(const UtcDateTime& t, std::string text, std::array<std::size_t, 6> at) {
  const auto twoDigits = [](int v) { return v >= 0 && v <= 99; };
  if (t.year < 0 || t.year > 9999 || !twoDigits(t.month) || !twoDigits(t.day) || !twoDigits(t.hour) ||
      !twoDigits(t.minute) || !twoDigits(t.second))
    return std::nullopt;
  const auto put = [&text](std::size_t from, int value, std::size_t digits) {
    for (std::size_t i = digits; i-- > 0; value /= 10) text[from + i] = static_cast<char>('0' + value % 10);
  };
  put(at[0], t.year, 4), put(at[1], t.month, 2), put(at[2], t.day, 2);
  put(at[3], t.hour, 2), put(at[4], t.minute, 2), put(at[5], t.second, 2);
  return text;
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
  if (auto text = InPattern(t, "0000-00-00 00:00:00", {0, 5, 8, 11, 14, 17})) return *std::move(text);
  char text[32];
  std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d:%02d", t.year, t.month, t.day, t.hour, t.minute,
                t.second);
  return text;
}

std::string BasicUtcText(const UtcDateTime& t) {
  if (auto text = InPattern(t, "00000000T000000Z", {0, 4, 6, 9, 11, 13})) return *std::move(text);
  char text[32];
  std::snprintf(text, sizeof text, "%04d%02d%02dT%02d%02d%02dZ", t.year, t.month, t.day, t.hour, t.minute,
                t.second);
  return text;
}

}  // namespace orchidlamp
