#include "editing/selection_tree.h"

#include "core/workspace.h"

namespace orchidlamp {

void CopyNode(const DatabaseTree& source, NodeId node, DatabaseTree& target) {
  const TreeNode& n = source[node];
  if (n.parent == kNoNode) {
    target.Add(kNoNode, n.key, n.text, ImageKey::None);
    return;
  }
  const NodeId parent = target.FindByKey(source[n.parent].key);
  if (parent == kNoNode) return;  // a parent without a key cannot be found again; the copy leaves it out
  target.Add(parent, n.key, n.text, ImageKey::None, n.tag);
}

void CopySubtree(const DatabaseTree& source, NodeId node, DatabaseTree& target) {
  CopyNode(source, node, target);
  source.ForEachChild(node, [&](NodeId child) {
    if (source[child].childCount > 0)
      CopySubtree(source, child, target);
    else
      CopyNode(source, child, target);
  });
}

void CopyTree(const DatabaseTree& source, DatabaseTree& target) {
  target.Clear();
  target.Reserve(source.size());
  for (NodeId id = 0; id < static_cast<NodeId>(source.size()); ++id)
    if (source[id].parent == kNoNode) CopySubtree(source, id, target);
}

DatabaseTree LoadSelectionTree(const DatabaseTree& source) {
  DatabaseTree tree;
  CopyTree(source, tree);
  const NodeId root = tree.FindByKey(kRootKey);
  if (root != kNoNode) {
    tree[root].image = ImageKey::TickNone;
    SetChildrenCheck(tree, root);
  }
  return tree;
}

void ToggleNodeCheck(DatabaseTree& tree, NodeId node) {
  if (node == kNoNode) return;
  const ImageKey image = tree[node].image;
  tree[node].image = image == ImageKey::TickNone || image == ImageKey::TickSome ? ImageKey::TickAll : ImageKey::TickNone;
  SetChildrenCheck(tree, node);
  UpdateParentCheck(tree, node);
}

void SetChildrenCheck(DatabaseTree& tree, NodeId node) {
  TreeNode& n = tree[node];
  if (n.parent != kNoNode && n.childCount == 0 && tree[n.parent].key == kRootKey) n.image = ImageKey::TickNone;
  const ImageKey pushed = n.image == ImageKey::TickAll ? ImageKey::TickAll : ImageKey::TickNone;
  // Three levels at most (root, database, record): the recursion stays shallow.
  for (NodeId c = n.firstChild; c != kNoNode; c = tree[c].next) {
    tree[c].image = pushed;
    SetChildrenCheck(tree, c);
  }
}

void UpdateParentCheck(DatabaseTree& tree, NodeId node) {
  const std::string& rootText = RootText(tree);
  while (node != kNoNode && tree[node].text != rootText) {
    const NodeId parent = tree[node].parent;
    if (parent == kNoNode) return;
    bool noneIsAll = true;
    bool noneIsNone = true;
    for (NodeId s = tree.FirstSibling(node); s != kNoNode; s = tree[s].next) {
      const ImageKey image = tree[s].image;
      if (image == ImageKey::TickSome) {
        noneIsAll = noneIsNone = false;
        break;
      }
      if (image == ImageKey::TickAll) noneIsAll = false;
      if (image == ImageKey::TickNone) noneIsNone = false;
    }
    if (noneIsNone) {
      // Siblings that carry no tick image at all clear neither flag: the parent keeps its tick.
      if (!noneIsAll) tree[parent].image = ImageKey::TickAll;
    } else {
      tree[parent].image = noneIsAll ? ImageKey::TickNone : ImageKey::TickSome;
    }
    node = parent;
  }
}

const std::string& RootText(const DatabaseTree& tree) {
  static const std::string kEmpty;
  return tree.empty() ? kEmpty : tree[tree.Root()].text;
}

}  // namespace orchidlamp
