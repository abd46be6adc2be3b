#pragma once

// Finding tree nodes by text, as the Search command does it: every node is a
// candidate (root and database nodes too), in collection order, compared after
// upper-casing both sides. "Find next" is the caller asking for the next
// occurrence number; nothing is remembered between calls.

#include <QString>

#include "core/database_tree.h"

namespace orchidlamp {

// The `occurrence`-th (1-based) node whose shown text contains `text`, or kNoNode.
// An occurrence below 1 finds nothing.
NodeId FindNode(const DatabaseTree& tree, const QString& text, int occurrence);

// The question asked after a match: "Found " + node text + CR LF + "Find next
// matching item? ".
QString FindNextQuestion(const QString& nodeText);

}  // namespace orchidlamp
