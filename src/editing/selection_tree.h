#pragma once

// The selection trees of the split and merge dialogs: a copy of a database tree
// whose node images are tick states (ImageKey::TickNone / TickSome / TickAll,
// keyed "None" / "Some" / "All"). A tick is nothing but a node's image; every
// reader of the selection compares images.
//
// The copy is made depth first, so a selection tree's collection order (its
// node vector) is the root, then each database followed by its records. The
// split and merge walk that order.

#include "core/database_tree.h"

namespace orchidlamp {

// Adds `node` of `source` to `target`: a top-level node at top level, any other
// node under the target node that has its parent's key (record nodes keep their
// tags). `source` must already have the node's parent copied.
void CopyNode(const DatabaseTree& source, NodeId node, DatabaseTree& target);
// The node, then its children in order, each with its own subtree.
void CopySubtree(const DatabaseTree& source, NodeId node, DatabaseTree& target);
// Clears `target` and copies every top-level node of `source` with its subtree.
void CopyTree(const DatabaseTree& source, DatabaseTree& target);

// What the dialogs do when they load: the copy, the root "Top" set to "None"
// and that pushed down, so every node starts unticked.
DatabaseTree LoadSelectionTree(const DatabaseTree& source);

// A click on a node's image: "None"/"Some" become "All", anything else "None";
// then the change goes down to the children and up to the ancestors.
void ToggleNodeCheck(DatabaseTree& tree, NodeId node);
// Every descendant takes "All" when the node is "All", else "None". A database
// node without records (no children, parent keyed "Top") is forced to "None":
// such a database can never be ticked.
void SetChildrenCheck(DatabaseTree& tree, NodeId node);
// Recomputes the parent's tick from the node and its siblings, then the
// grandparent's, until the root. The root is recognised by its TEXT: a database
// whose name equals the root's text stops the walk as if it were the root.
void UpdateParentCheck(DatabaseTree& tree, NodeId node);

// The root's text, or empty for an empty tree.
std::string RootText(const DatabaseTree& tree);

}  // namespace orchidlamp
