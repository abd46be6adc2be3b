#pragma once

#include <ctime>
#include <functional>
#include <string>

namespace orchidlamp {

// Generated file names carry the local day of month, hour, minute and second.
std::string DdHhNnSs(std::time_t when);

// Where "now" comes from; tests pin it.
using Clock = std::function<std::time_t()>;
Clock SystemClock();

}  // namespace orchidlamp
