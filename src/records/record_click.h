#pragma once

// What a click on a tree node shows: the panel of the record's kind, chosen by
// the name of the record's database (its parent node's text), with the decoded
// members; for a service book, the panel boxes in the workspace.

#include <optional>

#include "core/database_tree.h"
#include "core/kinds.h"
#include "core/workspace.h"
#include "records/record_kinds.h"

namespace orchidlamp {

struct ClickResult {
  std::optional<Kind> panel;  // nullopt: every panel stays hidden
  MemberList members;         // empty for the service book (its values are ws.hrtnet)
};

// Contact photos go to the workspace's program folder.
ClickResult ClickNode(Workspace& ws, NodeId node);

}  // namespace orchidlamp
