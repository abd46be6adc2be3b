#pragma once

#include <cstdint>
#include <string_view>

namespace orchidlamp {

// Node images by key: the tree's small icons, then the three tick states of the
// split and merge selection trees (a tick is a node's image there).
enum class ImageKey : std::uint8_t {
  None,
  smsin, missed, placed, received, sent, receivedsms, addressbook, calendars, memos,
  phonecalls, servicebook, tasks, errorsms, task, memo, calendar, ballon, excel,
  smsout, group, mobile, sheet, world,
  TickNone, TickSome, TickAll,
};

// "" for None; "None", "Some", "All" for the ticks; the key text otherwise.
std::string_view ImageKeyText(ImageKey key);

}  // namespace orchidlamp
