#include <libxml/xmlwriter.h>

#include <memory>

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

const xmlChar* X(const char* text) { return reinterpret_cast<const xmlChar*>(text); }

// One text writer into a memory buffer; any call that fails is remembered and
// the file is refused at the end.
class XmlOut {
 public:
  XmlOut() : buffer_(xmlBufferCreate(), &xmlBufferFree) {
    if (buffer_) writer_ = xmlNewTextWriterMemory(buffer_.get(), 0);
    ok_ = writer_ != nullptr;
    Check(xmlTextWriterSetIndent(writer_, 1));
    Check(xmlTextWriterSetIndentString(writer_, X("  ")));
    Check(xmlTextWriterStartDocument(writer_, nullptr, "UTF-8", "yes"));
  }
  ~XmlOut() {
    if (writer_) xmlFreeTextWriter(writer_);
  }
  XmlOut(const XmlOut&) = delete;
  XmlOut& operator=(const XmlOut&) = delete;

  void Start(const char* name) { Check(xmlTextWriterStartElement(writer_, X(name))); }
  void End() { Check(xmlTextWriterEndElement(writer_)); }
  void Attribute(const char* name, const std::string& value) {
    Check(xmlTextWriterWriteAttribute(writer_, X(name), X(value.c_str())));
  }

  Result<std::string> Finish(const char* what) {
    Check(xmlTextWriterEndDocument(writer_));
    if (writer_) xmlFreeTextWriter(writer_);
    writer_ = nullptr;
    if (!ok_) return Fail(std::string("Cannot build ") + what);
    return std::string(reinterpret_cast<const char*>(xmlBufferContent(buffer_.get())),
                       static_cast<std::size_t>(xmlBufferLength(buffer_.get())));
  }

 private:
  void Check(int rc) { ok_ = ok_ && writer_ && rc >= 0; }

  std::unique_ptr<xmlBuffer, decltype(&xmlBufferFree)> buffer_;
  xmlTextWriterPtr writer_ = nullptr;
  bool ok_ = false;
};

// date and readable_date of a stamp; a stamp that is missing or outside the
// years 100 to 9999 gives date "0" and no readable date.
void StampAttributes(XmlOut& xml, const std::optional<std::int64_t>& ms, const char* dateName,
                     std::optional<UtcDateTime>& readable) {
  readable = ms ? FromUnixMilliseconds(*ms) : std::nullopt;
  xml.Attribute(dateName, readable ? std::to_string(*ms) : "0");
}

}  // namespace

ContactNames::ContactNames(const std::vector<MigratedContact>& contacts) {
  for (const MigratedContact& c : contacts) {
    const std::string name = c.FullName();
    if (name.empty()) continue;
    for (const MigratedPhone& phone : c.phones)
      if (std::string key = NumberKey(phone.number); !key.empty()) byNumber_.emplace(std::move(key), name);
  }
}

std::string ContactNames::NameOf(std::string_view number) const {
  const auto found = byNumber_.find(NumberKey(number));
  return found == byNumber_.end() ? std::string(kUnknown) : found->second;
}

Result<std::string> MessagesXml(const std::vector<MigratedSms>& messages, const ContactNames& names) {
  XmlOut xml;
  xml.Start("smses");
  xml.Attribute("count", std::to_string(messages.size()));
  for (const MigratedSms& m : messages) {
    std::optional<UtcDateTime> readable;
    xml.Start("sms");
    xml.Attribute("protocol", "0");
    xml.Attribute("address", m.address);
    StampAttributes(xml, m.milliseconds, "date", readable);
    xml.Attribute("type", m.sent ? "2" : "1");
    xml.Attribute("subject", "null");
    xml.Attribute("body", m.body);
    xml.Attribute("toa", "null");
    xml.Attribute("sc_toa", "null");
    xml.Attribute("service_center", "null");
    xml.Attribute("read", "1");
    xml.Attribute("status", "-1");
    xml.Attribute("locked", "0");
    StampAttributes(xml, m.milliseconds, "date_sent", readable);
    if (readable) xml.Attribute("readable_date", ReadableText(*readable));
    xml.Attribute("contact_name", names.NameOf(m.address));
    xml.End();
  }
  xml.End();
  return xml.Finish("messages.xml");
}

Result<std::string> CallsXml(const std::vector<MigratedCall>& calls, const ContactNames& names) {
  XmlOut xml;
  xml.Start("calls");
  xml.Attribute("count", std::to_string(calls.size()));
  for (const MigratedCall& c : calls) {
    std::optional<UtcDateTime> readable;
    xml.Start("call");
    xml.Attribute("number", c.number);
    xml.Attribute("duration", std::to_string(c.seconds));
    StampAttributes(xml, c.milliseconds, "date", readable);
    xml.Attribute("type", c.direction == 0 ? "1" : c.direction == 1 ? "2" : "3");
    xml.Attribute("presentation", "1");
    if (readable) xml.Attribute("readable_date", ReadableText(*readable));
    xml.Attribute("contact_name", c.name.empty() ? names.NameOf(c.number) : c.name);
    xml.End();
  }
  xml.End();
  return xml.Finish("calls.xml");
}

}  // namespace orchidlamp
