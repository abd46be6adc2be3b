#include "export/migrate_text_format.h"
#include "export/migrate_writers.h"

namespace orchidlamp {
namespace {

void Line(std::string& out, std::string_view name, std::string_view value) {
  out += FoldContentLine(std::string(name) + ":" + std::string(value));
}

void TextLine(std::string& out, std::string_view name, std::string_view text) {
  if (!text.empty()) Line(out, name, EscapeContentValue(text));
}

// The stored categories are one comma-separated text; each becomes one value.
std::string CategoryList(std::string_view stored) {
  std::string out;
  std::size_t from = 0;
  while (from <= stored.size()) {
    std::size_t to = stored.find(',', from);
    if (to == std::string_view::npos) to = stored.size();
    std::string_view item = stored.substr(from, to - from);
    while (!item.empty() && item.front() == ' ') item.remove_prefix(1);
    while (!item.empty() && item.back() == ' ') item.remove_suffix(1);
    if (!item.empty()) out += (out.empty() ? "" : ",") + EscapeContentValue(item);
    from = to + 1;
  }
  return out;
}

void AddressLine(std::string& out, std::string_view type, const MigratedAddress& a) {
  if (a.Empty()) return;
  Line(out, std::string("ADR;TYPE=") + std::string(type),
       ";;" + EscapeContentValue(a.street) + ";" + EscapeContentValue(a.city) + ";" + EscapeContentValue(a.region) +
           ";" + EscapeContentValue(a.postalCode) + ";" + EscapeContentValue(a.country));
}

}  // namespace

void VCardFile::Add(const MigratedContact& c) {
  BufferedFileWriter* file = Next();
  if (!file) return;
  std::string& out = card_;
  out = "BEGIN:VCARD\r\nVERSION:3.0\r\n";
  Line(out, "N",
       EscapeContentValue(c.lastName) + ";" + EscapeContentValue(c.firstName) + ";;;" + EscapeContentValue(c.title));
  Line(out, "FN", EscapeContentValue(c.FullName()));
  TextLine(out, "ORG", c.company);
  TextLine(out, "TITLE", c.job);
  for (const std::string& email : c.emails) TextLine(out, "EMAIL;TYPE=INTERNET", email);
  for (const MigratedPhone& phone : c.phones)
    TextLine(out, phone.type.empty() ? std::string("TEL") : "TEL;TYPE=" + phone.type, phone.number);
  AddressLine(out, "WORK", c.work);
  AddressLine(out, "HOME", c.home);
  TextLine(out, "URL", c.webPage);
  TextLine(out, "BDAY", c.birthday);
  TextLine(out, "X-ANNIVERSARY", c.anniversary);
  TextLine(out, "NOTE", c.notes);
  if (std::string categories = CategoryList(c.categories); !categories.empty()) Line(out, "CATEGORIES", categories);
  if (!c.photo.empty()) Line(out, "PHOTO;ENCODING=b;TYPE=JPEG", Base64(c.photo));
  Line(out, "UID", std::to_string(c.uid));
  out += "END:VCARD\r\n";
  file->Append(out);
}

}  // namespace orchidlamp
