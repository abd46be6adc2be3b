#include "core/kinds.h"

namespace orchidlamp {
namespace {

constexpr std::array<KindInfo, kKindCount> kKinds = {{
    {Kind::BrowserBookmarks, "Browser Bookmarks"},
    {Kind::AutoText, "AutoText"},
    {Kind::SmsMessages, "SMS Messages"},
    {Kind::AddressBookAll, "Address Book - All"},
    {Kind::AddressBook, "Address Book"},
    {Kind::Memos, "Memos"},
    {Kind::Tasks, "Tasks"},
    {Kind::CalendarAll, "Calendar - All"},
    {Kind::Calendar, "Calendar"},
    {Kind::ServiceBook, "Service Book"},
    {Kind::PhoneCallLogs, "Phone Call Logs"},
}};

}  // namespace

const KindInfo& InfoOf(Kind kind) { return kKinds[static_cast<std::size_t>(kind)]; }

std::optional<Kind> KindByName(std::string_view cleanedName) {
  for (const KindInfo& info : kKinds)
    if (info.name == cleanedName) return info.kind;
  return std::nullopt;
}

}  // namespace orchidlamp
