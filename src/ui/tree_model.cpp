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
  auto changed = [this](NodeId id) {
    const auto count = static_cast<int>(ChildrenOf(id).size());
    if (count == 0) return;
    const QModelIndex parentIndex = id == kNoNode ? QModelIndex() : IndexOf(id);
    emit dataChanged(index(0, 0, parentIndex), index(count - 1, 0, parentIndex), {Qt::DecorationRole});
  };
  changed(kNoNode);
  for (NodeId id : tree_.OwnNodes()) changed(id);
}

void TreeModel::Detach() {
  beginResetModel();
  attached_ = false;
  endResetModel();
}

void TreeModel::Rebuild() {
  beginResetModel();
  attached_ = true;
  endResetModel();
}

const std::vector<NodeId>& TreeModel::ChildrenOf(NodeId id) const {
  static const std::vector<NodeId> kNone;
  if (!attached_ || (id != kNoNode && static_cast<std::size_t>(id) >= tree_.size())) return kNone;
  return tree_.Children(id);
}

QModelIndex TreeModel::IndexOf(NodeId id) const {
  if (!attached_ || id < 0 || static_cast<std::size_t>(id) >= tree_.size()) return {};
  return createIndex(tree_.Row(id), 0, static_cast<quintptr>(id));
}

NodeId TreeModel::NodeOf(const QModelIndex& index) const {
  if (!index.isValid() || index.model() != this) return kNoNode;
  return static_cast<NodeId>(index.internalId());
}

QModelIndex TreeModel::index(int row, int column, const QModelIndex& parent) const {
  if (column != 0 || row < 0) return {};
  if (parent.isValid() && parent.column() != 0) return {};
  const std::vector<NodeId>& children = ChildrenOf(parent.isValid() ? NodeOf(parent) : kNoNode);
  if (static_cast<std::size_t>(row) >= children.size()) return {};
  return createIndex(row, 0, static_cast<quintptr>(children[static_cast<std::size_t>(row)]));
}

QModelIndex TreeModel::parent(const QModelIndex& child) const {
  const NodeId id = NodeOf(child);
  if (id == kNoNode || !attached_) return {};
  return IndexOf(tree_.Parent(id));
}

int TreeModel::rowCount(const QModelIndex& parent) const {
  if (parent.isValid() && parent.column() != 0) return 0;
  return static_cast<int>(ChildrenOf(parent.isValid() ? NodeOf(parent) : kNoNode).size());
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
      const QIcon icon = images_(tree_.Image(id));
      return icon.isNull() ? QVariant() : QVariant(icon);
    }
    default:
      return {};
  }
}

}  // namespace orchidlamp
