#pragma once

// The XML reading desktop backups need: load a file, select nodes by an
// absolute XPath, read an attribute by a relative one. Documents are parsed
// without network access and without loading or substituting external or
// internal entities; a document that declares a DTD is refused outright.

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/result.h"

namespace orchidlamp {

class XmlDocument {
 public:
  ~XmlDocument();
  XmlDocument(XmlDocument&&) noexcept;
  XmlDocument& operator=(XmlDocument&&) noexcept;

  // The failure's text is the parser's reason (with the file and line).
  static Result<XmlDocument> Load(const std::string& path);

  // How many nodes the absolute XPath selects.
  std::size_t Count(const std::string& absolute) const;

  // For each node the absolute XPath selects, in document order, the text of
  // the first node `relative` selects from it (an attribute such as "@uid"), or
  // nothing when it selects none.
  Result<std::vector<std::optional<std::string>>> SelectEach(const std::string& absolute,
                                                             const std::string& relative) const;

 private:
  struct State;
  explicit XmlDocument(std::unique_ptr<State> state);
  std::unique_ptr<State> state_;
};

}  // namespace orchidlamp
