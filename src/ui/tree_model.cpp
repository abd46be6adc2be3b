#include "ui/tree_model.h"

#include "ui/display_text.h"
#include "ui/icon_set.h"

namespace orchidlamp {

TreeModel::TreeModel(const DatabaseTree& tree, const IconSet& icons, QObject* parent)
    : TreeModel(tree, [&icons](ImageKey key) { return icons.Small(key); }, parent) {}

TreeModel::TreeModel(const DatabaseTree& tree, ImageList images, QObject* parent)
    : QAbstractItemModel(parent), tree_(tree), images_(std::move(images)) {
  Rebuild();
}

void TreeModel::ImagesChanged() {
  // One signal per level would be exact; views only repaint what they show, so
  // the whole range under each shown parent is cheap enough and far simpler.
  if (!attached_ || tree_.empty()) return;
  for (NodeId id = kNoNode; id < static_cast<NodeId>(tree_.size()); ++id) {
    const int count = ChildrenOf(id).second;
    if (count == 0) continue;
    const QModelIndex parentIndex = id == kNoNode ? QModelIndex() : IndexOf(id);
    emit dataChanged(index(0, 0, parentIndex), index(count - 1, 0, parentIndex), {Qt::DecorationRole});
  }
}

void TreeModel::Detach() {
  beginResetModel();
  attached_ = false;
  children_.clear();
  begin_.clear();
  row_.clear();
  endResetModel();
}

void TreeModel::Rebuild() {
  beginResetModel();
  const std::size_t n = tree_.size();
  // A counting sort by parent keeps each node's children in collection order,
  // which is their order in the tree as well.
  begin_.assign(n + 2, 0);
  for (const TreeNode& node : tree_.nodes()) ++begin_[static_cast<std::size_t>(node.parent + 1) + 1];
  for (std::size_t i = 1; i < begin_.size(); ++i) begin_[i] += begin_[i - 1];
  std::vector<std::int32_t> fill(begin_.begin(), begin_.end() - 1);
  children_.assign(n, kNoNode);
  row_.assign(n, 0);
  for (NodeId id = 0; static_cast<std::size_t>(id) < n; ++id) {
    const auto slot = static_cast<std::size_t>(tree_[id].parent + 1);
    const std::int32_t at = fill[slot]++;
    children_[static_cast<std::size_t>(at)] = id;
    row_[static_cast<std::size_t>(id)] = at - begin_[slot];
  }
  attached_ = true;
  endResetModel();
}

std::pair<const NodeId*, int> TreeModel::ChildrenOf(NodeId id) const {
  if (!attached_) return {nullptr, 0};
  const auto slot = static_cast<std::size_t>(id + 1);
  if (slot + 1 >= begin_.size()) return {nullptr, 0};
  return {children_.data() + begin_[slot], begin_[slot + 1] - begin_[slot]};
}

QModelIndex TreeModel::IndexOf(NodeId id) const {
  if (!attached_ || id < 0 || static_cast<std::size_t>(id) >= row_.size()) return {};
  return createIndex(row_[static_cast<std::size_t>(id)], 0, static_cast<quintptr>(id));
}

NodeId TreeModel::NodeOf(const QModelIndex& index) const {
  if (!index.isValid() || index.model() != this) return kNoNode;
  return static_cast<NodeId>(index.internalId());
}

QModelIndex TreeModel::index(int row, int column, const QModelIndex& parent) const {
  if (column != 0 || row < 0) return {};
  if (parent.isValid() && parent.column() != 0) return {};
  const auto [first, count] = ChildrenOf(parent.isValid() ? NodeOf(parent) : kNoNode);
  if (row >= count) return {};
  return createIndex(row, 0, static_cast<quintptr>(first[row]));
}

QModelIndex TreeModel::parent(const QModelIndex& child) const {
  const NodeId id = NodeOf(child);
  if (id == kNoNode || !attached_) return {};
  return IndexOf(tree_[id].parent);
}

int TreeModel::rowCount(const QModelIndex& parent) const {
  if (parent.isValid() && parent.column() != 0) return 0;
  return ChildrenOf(parent.isValid() ? NodeOf(parent) : kNoNode).second;
}

int TreeModel::columnCount(const QModelIndex&) const { return 1; }

bool TreeModel::hasChildren(const QModelIndex& parent) const { return rowCount(parent) > 0; }

QVariant TreeModel::data(const QModelIndex& index, int role) const {
  const NodeId id = NodeOf(index);
  if (id == kNoNode || !attached_) return {};
  switch (role) {
    case Qt::DisplayRole:
    case Qt::ToolTipRole:
      return NodeDisplayText(tree_, id);
    case Qt::DecorationRole: {
      const QIcon icon = images_(tree_[id].image);
      return icon.isNull() ? QVariant() : QVariant(icon);
    }
    default:
      return {};
  }
}

}  // namespace orchidlamp
