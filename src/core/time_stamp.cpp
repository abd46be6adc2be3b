#include "core/time_stamp.h"

#include <cstdio>

namespace orchidlamp {

std::string DdHhNnSs(std::time_t when) {
  std::tm local{};
  localtime_r(&when, &local);
  char text[16];
  std::snprintf(text, sizeof text, "%02d%02d%02d%02d", local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec);
  return text;
}

Clock SystemClock() {
  return [] { return std::time(nullptr); };
}

}  // namespace orchidlamp
