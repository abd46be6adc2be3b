#include "convert/xml_document.h"

#include <libxml/parser.h>
#include <libxml/xpath.h>

#include <algorithm>

#include "core/bytes.h"
#include "core/file_io.h"

namespace orchidlamp {
namespace {

// Far beyond any manifest of a real device; refuses files meant to exhaust memory.
constexpr std::size_t kMaxXmlBytes = std::size_t{64} << 20;
constexpr std::ptrdiff_t kMaxXmlTags = std::ptrdiff_t{1} << 18;

std::string Trimmed(std::string text) {
  while (!text.empty() && (text.back() == '\n' || text.back() == '\r' || text.back() == ' ')) text.pop_back();
  return text;
}

struct ParserContextFree {
  void operator()(xmlParserCtxt* c) const { xmlFreeParserCtxt(c); }
};
struct XPathContextFree {
  void operator()(xmlXPathContext* c) const { xmlXPathFreeContext(c); }
};
struct XPathObjectFree {
  void operator()(xmlXPathObject* o) const { xmlXPathFreeObject(o); }
};

}  // namespace

struct XmlDocument::State {
  xmlDoc* doc = nullptr;
  ~State() {
    if (doc) xmlFreeDoc(doc);
  }
};

XmlDocument::XmlDocument(std::unique_ptr<State> state) : state_(std::move(state)) {}
XmlDocument::~XmlDocument() = default;
XmlDocument::XmlDocument(XmlDocument&&) noexcept = default;
XmlDocument& XmlDocument::operator=(XmlDocument&&) noexcept = default;

Result<XmlDocument> XmlDocument::Load(const std::string& path) {
  auto bytes = ReadWholeFile(path);
  if (!bytes) return bytes.failure();
  if (bytes->size() > kMaxXmlBytes) return Fail(path + " is too large for an XML file of a desktop backup");
  const std::string text = BytesToText(bytes.value());
  // Desktop software writes these files as 8-bit text. A NUL means a wide
  // encoding, in which the declaration test below would not see its markup.
  if (text.find('\0') != std::string::npos) return Fail(path + " is not 8-bit XML text");
  // Every element costs the parsed tree a few hundred bytes, so a file of
  // nothing but tags would cost gigabytes; 32767 databases need 65534 tags.
  if (std::count(text.begin(), text.end(), '<') > kMaxXmlTags)
    return Fail(path + " holds more elements than a desktop backup's XML file can");
  // A document type declaration is where entity expansion and external loads
  // begin; a desktop backup never has one, so it is refused before parsing.
  if (text.find("<!DOCTYPE") != std::string::npos || text.find("<!ENTITY") != std::string::npos)
    return Fail(path + " declares a document type, which desktop backups never do");

  xmlInitParser();
  std::unique_ptr<xmlParserCtxt, ParserContextFree> context(xmlNewParserCtxt());
  if (!context) return Fail("Out of memory while reading " + path);
  constexpr int kOptions = XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING;
  xmlDoc* doc = xmlCtxtReadMemory(context.get(), text.data(), static_cast<int>(text.size()), path.c_str(), nullptr,
                                  kOptions);
  if (!doc) {
    const xmlError* error = xmlCtxtGetLastError(context.get());
    std::string reason = error && error->message ? Trimmed(error->message) : "not a well-formed XML document";
    if (error && error->line > 0) reason += " (" + path + ", line " + std::to_string(error->line) + ")";
    else reason += " (" + path + ")";
    return Fail(reason);
  }
  auto state = std::make_unique<State>();
  state->doc = doc;
  if (doc->intSubset || doc->extSubset) return Fail(path + " declares a document type, which desktop backups never do");
  return XmlDocument(std::move(state));
}

std::size_t XmlDocument::Count(const std::string& absolute) const {
  std::unique_ptr<xmlXPathContext, XPathContextFree> context(xmlXPathNewContext(state_->doc));
  if (!context) return 0;
  std::unique_ptr<xmlXPathObject, XPathObjectFree> nodes(
      xmlXPathEvalExpression(reinterpret_cast<const xmlChar*>(absolute.c_str()), context.get()));
  if (!nodes || nodes->type != XPATH_NODESET || !nodes->nodesetval) return 0;
  return static_cast<std::size_t>(nodes->nodesetval->nodeNr);
}

Result<std::vector<std::optional<std::string>>> XmlDocument::SelectEach(const std::string& absolute,
                                                                        const std::string& relative) const {
  std::unique_ptr<xmlXPathContext, XPathContextFree> context(xmlXPathNewContext(state_->doc));
  if (!context) return Fail("Out of memory while reading XML");
  std::unique_ptr<xmlXPathObject, XPathObjectFree> nodes(
      xmlXPathEvalExpression(reinterpret_cast<const xmlChar*>(absolute.c_str()), context.get()));
  std::vector<std::optional<std::string>> values;
  if (!nodes || nodes->type != XPATH_NODESET || !nodes->nodesetval) return values;
  const xmlNodeSet* set = nodes->nodesetval;
  values.reserve(static_cast<std::size_t>(set->nodeNr));
  for (int i = 0; i < set->nodeNr; ++i) {
    std::unique_ptr<xmlXPathObject, XPathObjectFree> found(
        xmlXPathNodeEval(set->nodeTab[i], reinterpret_cast<const xmlChar*>(relative.c_str()), context.get()));
    if (!found || found->type != XPATH_NODESET || !found->nodesetval || found->nodesetval->nodeNr == 0) {
      values.emplace_back();
      continue;
    }
    xmlChar* content = xmlNodeGetContent(found->nodesetval->nodeTab[0]);
    values.emplace_back(content ? std::string(reinterpret_cast<const char*>(content)) : std::string());
    xmlFree(content);
  }
  return values;
}

}  // namespace orchidlamp
