#include <algorithm>
#include <array>
#include <functional>

#include "export/migrate_writers.h"

namespace orchidlamp {
namespace {

constexpr std::string_view kUnknown = "(Unknown)";

// Spaces, dashes, dots and brackets are how numbers are written, not what
// they are.
std::string NumberKey(std::string_view number) {
  std::string key;
  for (char c : number)
    if ((c >= '0' && c <= '9') || c == '+' || c == '*' || c == '#') key += c;
  return key;
}

// The bytes AppendEscaped stops at, looked up once per byte.
constexpr std::array<bool, 256> kEscaped = [] {
  std::array<bool, 256> escaped{};
  for (unsigned char c : std::string_view("\n\r\t\"<>&")) escaped[c] = true;
  escaped[0] = true;
  return escaped;
}();

// An attribute value as libxml2 escapes it in a document declared UTF-8: the
// markup characters and the three whitespace controls become references,
// everything else stays as it is. Like the writer, which takes C strings, a
// value ends at a NUL.
void AppendEscaped(std::string& out, std::string_view value) {
  std::size_t from = 0;
  for (std::size_t at = 0; at < value.size(); ++at) {
    if (!kEscaped[static_cast<unsigned char>(value[at])]) continue;
    std::string_view entity;
    switch (value[at]) {
      case '\0': out.append(value.substr(from, at - from)); return;
      case '\n': entity = "&#10;"; break;
      case '\r': entity = "&#13;"; break;
      case '\t': entity = "&#9;"; break;
      case '"': entity = "&quot;"; break;
      case '<': entity = "&lt;"; break;
      case '>': entity = "&gt;"; break;
      default: entity = "&amp;"; break;
    }
    out.append(value.substr(from, at - from));
    out.append(entity);
    from = at + 1;
  }
  out.append(value.substr(from));
}

}  // namespace

void ContactNames::Add(const MigratedContact& c) {
  const std::string name = c.FullName();
  if (name.empty()) return;
  bool named = false;
  for (const MigratedPhone& phone : c.phones) {
    const std::string key = NumberKey(phone.number);
    if (key.empty()) continue;
    if (2 * (used_ + 1) > slots_.size()) Grow();
    const std::uint64_t hash = std::hash<std::string_view>{}(key);
    Slot& slot = slots_[At(key, hash)];
    if (slot.name != 0) continue;
    if (!named) names_.push_back(name), named = true;
    slot = {hash, static_cast<std::uint32_t>(keys_.size()), static_cast<std::uint32_t>(key.size()),
            static_cast<std::uint32_t>(names_.size())};
    keys_ += key;
    ++used_;
  }
}

std::size_t ContactNames::At(std::string_view key, std::uint64_t hash) const {
  const std::size_t mask = slots_.size() - 1;
  for (std::size_t at = hash & mask;; at = (at + 1) & mask) {
    const Slot& slot = slots_[at];
    if (slot.name == 0 || (slot.hash == hash && std::string_view(keys_).substr(slot.keyAt, slot.keySize) == key))
      return at;
  }
}

void ContactNames::Grow() {
  std::vector<Slot> old(std::max<std::size_t>(64, slots_.size() * 2));
  old.swap(slots_);
  const std::size_t mask = slots_.size() - 1;
  for (const Slot& slot : old) {
    if (slot.name == 0) continue;
    std::size_t at = slot.hash & mask;
    while (slots_[at].name != 0) at = (at + 1) & mask;
    slots_[at] = slot;
  }
}

std::string ContactNames::NameOf(std::string_view number) const {
  if (slots_.empty()) return std::string(kUnknown);
  const std::string key = NumberKey(number);
  const Slot& slot = slots_[At(key, std::hash<std::string_view>{}(key))];
  return slot.name == 0 ? std::string(kUnknown) : names_[slot.name - 1];
}

XmlFile::XmlFile(std::string path, PrepareFolder prepare, const char* root, std::size_t total,
                 const ContactNames& names)
    : MigrationFile(std::move(path), std::move(prepare)), names_(names), root_(root), total_(total) {}

void XmlFile::Head(BufferedFileWriter& out) {
  out.Append(std::string(R"(<?xml version="1.0" encoding="UTF-8" standalone="yes"?>)") + "\n<" + root_ + " count=\"" +
             std::to_string(total_) + "\">\n");
}

void XmlFile::Tail(BufferedFileWriter& out) { out.Append(std::string("</") + root_ + ">\n"); }

void XmlFile::Start(const char* name) {
  element_ = "  <";
  element_ += name;
  stampKnown_ = false;
}

void XmlFile::End(BufferedFileWriter& out) {
  element_ += "/>\n";
  out.Append(element_);
}

void XmlFile::Attribute(std::string_view name, std::string_view value) {
  element_ += ' ';
  element_ += name;
  element_ += "=\"";
  AppendEscaped(element_, value);
  element_ += '"';
}

void XmlFile::Stamp(const std::optional<std::int64_t>& ms, std::string_view dateName) {
  // A message states its stamp twice (date and date_sent).
  if (!stampKnown_ || ms != stamp_) {
    stamp_ = ms;
    stampKnown_ = true;
    readable_ = ms ? FromUnixMilliseconds(*ms) : std::nullopt;
    date_ = readable_ ? std::to_string(*ms) : "0";
  }
  Attribute(dateName, date_);
}

void XmlFile::ReadableDate() {
  if (readable_) Attribute("readable_date", ReadableText(*readable_));
}

void MessagesXmlFile::Add(const MigratedSms& m) {
  BufferedFileWriter* out = Next();
  if (!out) return;
  // Runs of fixed attributes go in whole.
  Start("sms");
  Fixed(R"( protocol="0")");
  Attribute("address", m.address);
  Stamp(m.milliseconds, "date");
  Fixed(m.sent ? R"( type="2" subject="null")" : R"( type="1" subject="null")");
  Attribute("body", m.body);
  Fixed(R"( toa="null" sc_toa="null" service_center="null" read="1" status="-1" locked="0")");
  Stamp(m.milliseconds, "date_sent");
  ReadableDate();
  Attribute("contact_name", names_.NameOf(m.address));
  End(*out);
}

void CallsXmlFile::Add(const MigratedCall& c) {
  BufferedFileWriter* out = Next();
  if (!out) return;
  Start("call");
  Attribute("number", c.number);
  Attribute("duration", std::to_string(c.seconds));
  Stamp(c.milliseconds, "date");
  Attribute("type", c.direction == 0 ? "1" : c.direction == 1 ? "2" : "3");
  Attribute("presentation", "1");
  ReadableDate();
  Attribute("contact_name", c.name.empty() ? names_.NameOf(c.number) : c.name);
  End(*out);
}

}  // namespace orchidlamp
