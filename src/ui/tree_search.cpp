#include "ui/tree_search.h"

#include "ui/display_text.h"

namespace orchidlamp {

NodeId FindNode(const DatabaseTree& tree, const QString& text, int occurrence) {
  if (occurrence < 1) return kNoNode;
  const QString wanted = text.toUpper();
  int found = 0;
  for (NodeId id = 0; static_cast<std::size_t>(id) < tree.size(); ++id) {
    if (!NodeDisplayText(tree, id).toUpper().contains(wanted)) continue;
    if (++found == occurrence) return id;
  }
  return kNoNode;
}

QString FindNextQuestion(const QString& nodeText) {
  return QStringLiteral("Found ") + nodeText + QStringLiteral("\r\nFind next matching item? ");
}

}  // namespace orchidlamp
