#pragma once

// frmSplit: the open backup's databases and records in a selection tree; the
// ticked ones are written to a new IPD file chosen in a save dialog.
//
// The tree is copied from the main tree on the background worker when the
// dialog is made (btnSplit waits for it); the split reads the main window's
// loaded bytes when it writes, so the window must not load another file while
// the dialog is open (it is modal). The split itself runs on the worker too.

#include <QDialog>

#include "core/database_tree.h"

class QPushButton;

namespace orchidlamp {

class BackgroundWork;
class SelectionTreeView;
class UserPrompts;
class Workspace;

class frmSplit final : public QDialog {
  Q_OBJECT
 public:
  frmSplit(const Workspace& ws, UserPrompts& prompts, QWidget* parent = nullptr);
  ~frmSplit() override;

  SelectionTreeView* tvwTree() const { return tvwTree_; }
  DatabaseTree& selection() { return selection_; }
  BackgroundWork& work() { return *work_; }

 public slots:
  void btnSplit_Click();

 private:
  void SetBusy(bool busy);

  const Workspace& ws_;
  UserPrompts& prompts_;
  DatabaseTree selection_;
  SelectionTreeView* tvwTree_ = nullptr;
  QPushButton* btnSplit_ = nullptr;
  BackgroundWork* work_ = nullptr;
};

}  // namespace orchidlamp
