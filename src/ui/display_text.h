#pragma once

// Record texts are 8-bit code-page text; the root node's text is a path as the
// file system gave it. These turn either into what a widget shows, and back.

#include <QString>
#include <string>
#include <string_view>

#include "core/database_tree.h"

namespace orchidlamp {

QString FromRecordText(std::string_view text8bit);
std::string ToRecordText(const QString& text);

QString FromPath(std::string_view path);
std::string ToPath(const QString& path);

// What the tree shows for a node: the root's text is a path (or the no-file
// title), every other node's text is record text.
QString NodeDisplayText(const DatabaseTree& tree, NodeId id);

}  // namespace orchidlamp
