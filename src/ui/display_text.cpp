#include "ui/display_text.h"

#include "core/code_page_1256.h"

namespace orchidlamp {

QString FromRecordText(std::string_view text8bit) { return QString::fromStdString(Cp1256ToUtf8(text8bit)); }

std::string ToRecordText(const QString& text) { return Utf8ToCp1256(text.toStdString()); }

QString FromPath(std::string_view path) {
  return QString::fromUtf8(path.data(), static_cast<qsizetype>(path.size()));
}

std::string ToPath(const QString& path) { return path.toStdString(); }

QString NodeDisplayText(const DatabaseTree& tree, NodeId id) {
  const std::string text = tree.Text(id);
  return tree.Parent(id) == kNoNode ? FromPath(text) : FromRecordText(text);
}

}  // namespace orchidlamp
