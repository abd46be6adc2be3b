#pragma once

// tvwMain's model: a view over the workspace's DatabaseTree without an item per
// record. Rows are the tree's own child lists and a record's text and picture are
// its label, made when a view asks for a shown row, so a backup of a million
// records opens and scrolls without per-node objects.
//
// The tree is owned by the workspace and changes only while a file loads. Call
// Detach() before anything changes it and Rebuild() afterwards; between the two
// the model shows nothing, so a view repainting during a load never reads a tree
// that is half built.

#include <QAbstractItemModel>
#include <QIcon>
#include <functional>
#include <vector>

#include "core/database_tree.h"

namespace orchidlamp {

class IconSet;

class TreeModel final : public QAbstractItemModel {
  Q_OBJECT
 public:
  // A node's picture is its image key looked up in `images` (an empty icon: none).
  using ImageList = std::function<QIcon(ImageKey)>;
  TreeModel(const DatabaseTree& tree, const IconSet& icons, QObject* parent = nullptr);
  TreeModel(const DatabaseTree& tree, ImageList images, QObject* parent = nullptr);

  void Detach();
  void Rebuild();
  // The images of nodes changed (ticks); the shape of the tree did not.
  void ImagesChanged();

  QModelIndex IndexOf(NodeId id) const;
  // kNoNode for an invalid index.
  NodeId NodeOf(const QModelIndex& index) const;

  QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
  QModelIndex parent(const QModelIndex& child) const override;
  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
  bool hasChildren(const QModelIndex& parent = {}) const override;

 private:
  // The children of a node (kNoNode: the top level) in order; none while detached.
  const std::vector<NodeId>& ChildrenOf(NodeId id) const;

  const DatabaseTree& tree_;
  ImageList images_;
  bool attached_ = false;
};

}  // namespace orchidlamp
