#include "export/export_kinds.h"

#include <array>

namespace orchidlamp {
namespace {

constexpr std::string_view kContactHeader =
    "Title,First Name,Last Name,Company,Job,Email,Work Phone 1,Work Phone 2,Home Phone 1,Home Phone 2,Mobile,Pager,"
    "Fax,PIN,Other,Home Address 1,Home Address 2,Home City,Home State,Home ZIP,Home Country,Work Address 1,"
    "Work Address 2,Work City,Work State,Work ZIP,Work Country,Birthday,Anniversary,Category,Web Page,Notes";
constexpr std::string_view kCalendarHeader = "Subject,Location,Start,End,Duration,Notes";

// Indexed by Kind. The tree titles keep the indentation each kind has always had.
constexpr std::array<ExportKindRow, kKindCount> kRows = {{
    {Kind::BrowserBookmarks, FormatBookmark, "Export Selected Browser Bookmark", "Export All Browser Bookmarks", "",
     "", "", "", "                         Browser Bookmarks"},
    {Kind::AutoText, FormatAutoText, "Export Selected AutoText Word", "Export All AutoText Words", "AutoText",
     "AutoText", "AutoText Words", "Replace,With", "                           AutoText"},
    {Kind::SmsMessages, FormatSms, "Export Selected SMS Message", "Export All SMS Messages", "SMS Message",
     "SMS Message", "SMS Message", "Status,Sent Date,Received Date,Number,Message",
     "                           SMS Messages"},
    {Kind::AddressBookAll, FormatContactNested, "Export Selected Address", "Export All Addresses", "Address Book",
     "Address Book", "Address Book", kContactHeader, "                           Address Book"},
    {Kind::AddressBook, FormatContact, "Export Selected Address", "Export All Addresses", "Address Book",
     "Address Book", "Address Book", kContactHeader, "                           Address Book"},
    {Kind::Memos, FormatMemo, "Export Selected Memo", "Export All Memos", "Memo", "Memos", "Memos", "Title,Memo",
     "                          Memos"},
    {Kind::Tasks, FormatTask, "Export Selected Task", "Export All Tasks", "Task", "Tasks", "Tasks",
     "Task,Status,Priority,Notes", "                          Tasks"},
    {Kind::CalendarAll, FormatAppointmentNested, "Export Selected Calendar", "Export All Calendar", "Calendar",
     "Calendar", "Calendar", kCalendarHeader, "                          Calendar"},
    {Kind::Calendar, FormatAppointment, "Export Selected Calendar", "Export All Calendar", "Calendar",
     "Calendar", "Calendar", kCalendarHeader, "                          Calendar"},
    {Kind::ServiceBook, nullptr, "", "", "", "", "", "", ""},
    {Kind::PhoneCallLogs, FormatCall, "Export Selected Phone Call", "Export All Phone Calls", "Phone Calls",
     "Phone Calls", "Phone Calls", "Name,Number,Date,Duration,Direction,Status",
     "                          Phone Call Logs"},
}};

}  // namespace

const ExportKindRow* ExportRowByText(std::string_view databaseText) {
  const auto kind = KindByName(databaseText);
  if (!kind) return nullptr;
  const ExportKindRow& row = kRows[static_cast<std::size_t>(*kind)];
  return row.format ? &row : nullptr;
}

const ExportKindRow* ExportRowBySelectedCaption(std::string_view caption) {
  for (const ExportKindRow& row : kRows)
    if (!row.recordTitle.empty() && row.selectedCaption == caption) return &row;
  return nullptr;
}

const ExportKindRow* ExportRowByAllCaption(std::string_view caption) {
  for (const ExportKindRow& row : kRows)
    if (!row.kindTitleText.empty() && row.allCaption == caption) return &row;
  return nullptr;
}

}  // namespace orchidlamp
