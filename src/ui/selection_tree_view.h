#pragma once

// The selection trees of the split and merge dialogs (tvwTree, tvwfTree,
// tvwsTree): a view of a DatabaseTree whose node images are tick states, drawn
// from ImageList1 ("None", "Some", "All").
//
// A tick changes only by a click on the node's image at the start of its row
// (a click on its text changes nothing) or by the space key on the selected
// node. Every character key is swallowed, so typing never moves the selection;
// the arrow keys still do.

#include <QIcon>
#include <QPoint>
#include <QTreeView>
#include <functional>

#include "core/database_tree.h"

namespace orchidlamp {

class TreeModel;

// ImageList1: the three tick pictures, keyed by the tick states.
class TickImages {
 public:
  TickImages();
  // Empty for anything but the three tick states.
  QIcon Image(ImageKey key) const;

 private:
  QIcon none_, some_, all_;
};

class BackgroundWork;

class SelectionTreeView final : public QTreeView {
  Q_OBJECT
 public:
  SelectionTreeView(const QString& name, QWidget* parent = nullptr);

  // Shows `tree`, which must outlive the view or the next SetTree; every node
  // expanded. Null shows nothing.
  void SetTree(DatabaseTree* tree);
  DatabaseTree* selection() const { return tree_; }
  TreeModel* treeModel() const { return model_; }

  // ToggleNodeCheck on `node`, and the pictures brought up to date.
  void Toggle(NodeId node);
  // Where a click toggles: the picture at the start of the row.
  QRect ImageRect(const QModelIndex& index) const;

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void ClickedAt(const QModelIndex& index);

  TickImages images_;
  DatabaseTree empty_;
  DatabaseTree* tree_ = nullptr;
  TreeModel* model_ = nullptr;
  QPoint pressedAt_;
};

// Copies `source` (the main tree) into `into` on `work`, then shows it in
// `view` and runs `done`: a million records are copied without holding the window.
void CopyIntoView(BackgroundWork& work, const DatabaseTree& source, DatabaseTree& into, SelectionTreeView& view,
                  std::function<void()> done);

}  // namespace orchidlamp
