#pragma once

// frmMerge: the open backup (tvwfTree) and a second IPD file chosen with
// smBrowse (tvwsTree), each in a selection tree; btnMerge writes the ticked
// databases of both into a new IPD file chosen in a save dialog.
//
// The first tree is copied from the main tree when the dialog is made and the
// merge reads the main window's loaded bytes when it writes (the dialog is
// modal). The second file lives in the dialog until another is browsed. The
// copy, the second file's load and the merge run on the background worker.

#include <QDialog>
#include <optional>

#include "core/database_tree.h"
#include "editing/merge_source.h"

class QLineEdit;
class QPushButton;

namespace orchidlamp {

class BackgroundWork;
class SelectionTreeView;
class UserPrompts;
class Workspace;

class frmMerge final : public QDialog {
  Q_OBJECT
 public:
  frmMerge(const Workspace& ws, UserPrompts& prompts, QWidget* parent = nullptr);
  ~frmMerge() override;

  SelectionTreeView* tvwfTree() const { return tvwfTree_; }
  SelectionTreeView* tvwsTree() const { return tvwsTree_; }
  QLineEdit* smIPD() const { return smIPD_; }
  DatabaseTree& firstSelection() { return first_; }
  // Null until a second file was loaded.
  SecondFile* second() { return second_ ? &*second_ : nullptr; }
  BackgroundWork& work() { return *work_; }

 public slots:
  void smBrowse_Click();
  void btnMerge_Click();

 private:
  void SetBusy(bool busy);

  const Workspace& ws_;
  UserPrompts& prompts_;
  DatabaseTree first_;
  std::optional<SecondFile> second_;
  SelectionTreeView* tvwfTree_ = nullptr;
  SelectionTreeView* tvwsTree_ = nullptr;
  QLineEdit* smIPD_ = nullptr;
  QPushButton* smBrowse_ = nullptr;
  QPushButton* btnMerge_ = nullptr;
  BackgroundWork* work_ = nullptr;
};

}  // namespace orchidlamp
