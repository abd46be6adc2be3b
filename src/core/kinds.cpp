#include "core/kinds.h"

namespace orchidlamp {
namespace {

constexpr std::array<KindInfo, kKindCount> kKinds = {{
    {Kind::BrowserBookmarks, "Browser Bookmarks", ImageKey::None},
    {Kind::AutoText, "AutoText", ImageKey::None},
    {Kind::SmsMessages, "SMS Messages", ImageKey::receivedsms},
    {Kind::AddressBookAll, "Address Book - All", ImageKey::addressbook},
    {Kind::AddressBook, "Address Book", ImageKey::mobile},
    {Kind::Memos, "Memos", ImageKey::memos},
    {Kind::Tasks, "Tasks", ImageKey::tasks},
    {Kind::CalendarAll, "Calendar - All", ImageKey::calendars},
    {Kind::Calendar, "Calendar", ImageKey::calendars},
    {Kind::ServiceBook, "Service Book", ImageKey::servicebook},
    {Kind::PhoneCallLogs, "Phone Call Logs", ImageKey::received},
}};

}  // namespace

const KindInfo& InfoOf(Kind kind) { return kKinds[static_cast<std::size_t>(kind)]; }

std::optional<Kind> KindByName(std::string_view cleanedName) {
  for (const KindInfo& info : kKinds)
    if (info.name == cleanedName) return info.kind;
  return std::nullopt;
}

}  // namespace orchidlamp
