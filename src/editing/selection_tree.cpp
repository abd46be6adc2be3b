#include "editing/selection_tree.h"

#include "core/workspace.h"

namespace orchidlamp {

namespace {

// Copies one node under `parent` of the target (kNoNode: top level); record
// nodes keep their tags, and every copy starts without an image.
void CopyUnder(const DatabaseTree& source, NodeId node, NodeId parent, DatabaseTree& target) {
  if (const auto kind = source.RecordKind(node)) {
    target.SetImage(target.AddRecord(parent, *kind, *source.Tag(node)), ImageKey::None);
    return;
  }
  target.Add(parent, source.Key(node), source.Text(node), ImageKey::None,
             parent == kNoNode ? std::nullopt : source.Tag(node));
}

NodeId CopiedParent(const DatabaseTree& source, NodeId node, const DatabaseTree& target) {
  // A parent without a key cannot be found again; the copy leaves its children out.
  return target.FindByKey(source.Key(source.Parent(node)));
}

}  // namespace

void CopyNode(const DatabaseTree& source, NodeId node, DatabaseTree& target) {
  if (source.Parent(node) == kNoNode) return CopyUnder(source, node, kNoNode, target);
  const NodeId parent = CopiedParent(source, node, target);
  if (parent != kNoNode) CopyUnder(source, node, parent, target);
}

void CopySubtree(const DatabaseTree& source, NodeId node, DatabaseTree& target) {
  CopyNode(source, node, target);
  // Every leaf child finds the same copied parent, so it is looked up once for a
  // run of leaves, and again after a subtree, whose keys may change the answer.
  constexpr NodeId kNotLookedUp = kNoNode - 1;
  NodeId leafParent = kNotLookedUp;
  source.ForEachChild(node, [&](NodeId child) {
    if (source.ChildCount(child) > 0) {
      CopySubtree(source, child, target);
      leafParent = kNotLookedUp;
      return;
    }
    if (leafParent == kNotLookedUp) leafParent = CopiedParent(source, child, target);
    if (leafParent != kNoNode) CopyUnder(source, child, leafParent, target);
  });
}

void CopyTree(const DatabaseTree& source, DatabaseTree& target) {
  target.Clear();
  target.ShareLabelSource(source);
  target.Reserve(source.size());
  for (NodeId id = 0; id < static_cast<NodeId>(source.size()); ++id)
    if (source.Parent(id) == kNoNode) CopySubtree(source, id, target);
}

DatabaseTree LoadSelectionTree(const DatabaseTree& source) {
  DatabaseTree tree;
  CopyTree(source, tree);
  const NodeId root = tree.FindByKey(kRootKey);
  if (root != kNoNode) {
    tree.SetImage(root, ImageKey::TickNone);
    SetChildrenCheck(tree, root);
  }
  return tree;
}

void ToggleNodeCheck(DatabaseTree& tree, NodeId node) {
  if (node == kNoNode) return;
  const ImageKey image = tree.Image(node);
  tree.SetImage(node, image == ImageKey::TickNone || image == ImageKey::TickSome ? ImageKey::TickAll : ImageKey::TickNone);
  SetChildrenCheck(tree, node);
  UpdateParentCheck(tree, node);
}

void SetChildrenCheck(DatabaseTree& tree, NodeId node) {
  const NodeId parent = tree.Parent(node);
  if (parent != kNoNode && tree.ChildCount(node) == 0 && tree.Key(parent) == kRootKey)
    tree.SetImage(node, ImageKey::TickNone);
  const ImageKey pushed = tree.Image(node) == ImageKey::TickAll ? ImageKey::TickAll : ImageKey::TickNone;
  // Three levels at most (root, database, record): the recursion stays shallow.
  for (NodeId c : tree.Children(node)) {
    tree.SetImage(c, pushed);
    SetChildrenCheck(tree, c);
  }
}

void UpdateParentCheck(DatabaseTree& tree, NodeId node) {
  const std::string rootText = RootText(tree);
  while (node != kNoNode && tree.Text(node) != rootText) {
    const NodeId parent = tree.Parent(node);
    if (parent == kNoNode) return;
    bool noneIsAll = true;
    bool noneIsNone = true;
    for (NodeId s : tree.Children(parent)) {
      const ImageKey image = tree.Image(s);
      if (image == ImageKey::TickSome) {
        noneIsAll = noneIsNone = false;
        break;
      }
      if (image == ImageKey::TickAll) noneIsAll = false;
      if (image == ImageKey::TickNone) noneIsNone = false;
    }
    if (noneIsNone) {
      // Siblings that carry no tick image at all clear neither flag: the parent keeps its tick.
      if (!noneIsAll) tree.SetImage(parent, ImageKey::TickAll);
    } else {
      tree.SetImage(parent, noneIsAll ? ImageKey::TickNone : ImageKey::TickSome);
    }
    node = parent;
  }
}

std::string RootText(const DatabaseTree& tree) { return tree.empty() ? std::string() : tree.Text(tree.Root()); }

}  // namespace orchidlamp
