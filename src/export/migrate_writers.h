#pragma once

// The migration files' contents, one function per format. Each takes the
// collected records and gives the whole file; the run writes it.

#include <ctime>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "core/result.h"
#include "export/migrate_records.h"

namespace orchidlamp {

// contacts.vcf: vCard 3.0, CRLF, folded at 75 octets.
std::string VCardFile(const std::vector<MigratedContact>& contacts);

// calendar.ics through libical: one VCALENDAR, a VEVENT per appointment and a
// VTODO per task. `now` is the DTSTAMP.
Result<std::string> ICalendarFile(const std::vector<MigratedEvent>& events, const std::vector<MigratedTask>& tasks,
                                  std::time_t now);

// Contact names by phone number, for the XML files' contact_name.
class ContactNames {
 public:
  explicit ContactNames(const std::vector<MigratedContact>& contacts);
  // The name of a contact with this number (compared without spaces, dashes,
  // dots and brackets), else "(Unknown)".
  std::string NameOf(std::string_view number) const;

 private:
  std::unordered_map<std::string, std::string> byNumber_;
};

// messages.xml and calls.xml in the "SMS Backup & Restore" format, through
// libxml2's text writer.
Result<std::string> MessagesXml(const std::vector<MigratedSms>& messages, const ContactNames& names);
Result<std::string> CallsXml(const std::vector<MigratedCall>& calls, const ContactNames& names);

// memos/: file name and content per memo, "NNNN Title.txt" from 0001.
std::vector<std::pair<std::string, std::string>> MemoFiles(const std::vector<MigratedMemo>& memos);

// bookmarks.html in the Netscape bookmark format.
std::string BookmarksHtml(const std::vector<MigratedBookmark>& bookmarks);

// autotext.csv: RFC 4180, CRLF, header "Replace,With".
std::string AutoTextCsv(const std::vector<MigratedAutoText>& entries);

}  // namespace orchidlamp
