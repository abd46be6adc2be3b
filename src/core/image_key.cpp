#include "core/image_key.h"

#include <array>

namespace orchidlamp {
namespace {

constexpr std::array<std::string_view, 27> kTexts = {
    "",           "smsin",    "missed", "placed", "received", "sent",    "receivedsms",
    "addressbook", "calendars", "memos", "phonecalls", "servicebook", "tasks", "errorsms",
    "task",       "memo",     "calendar", "ballon", "excel",  "smsout",  "group",
    "mobile",     "sheet",    "world",  "None",   "Some",     "All",
};

}  // namespace

std::string_view ImageKeyText(ImageKey key) { return kTexts[static_cast<std::size_t>(key)]; }

}  // namespace orchidlamp
