#include "ui/split_dialog.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "core/workspace.h"
#include "editing/selection_tree.h"
#include "editing/split.h"
#include "ui/display_text.h"
#include "ui/background_work.h"
#include "ui/selection_tree_view.h"
#include "ui/user_prompts.h"
#include "ui/work_bar.h"

namespace orchidlamp {

frmSplit::frmSplit(const Workspace& ws, UserPrompts& prompts, QWidget* parent)
    : QDialog(parent), ws_(ws), prompts_(prompts), work_(new BackgroundWork(this)) {
  setObjectName(QStringLiteral("frmSplit"));
  setWindowTitle(QStringLiteral("Split IPD file"));
  auto* layout = new QVBoxLayout(this);
  auto* label = new QLabel(QStringLiteral("Split the IPD file"), this);
  label->setObjectName(QStringLiteral("Label1"));
  QFont heading = label->font();
  heading.setBold(true);
  label->setFont(heading);
  layout->addWidget(label);
  auto* hint = new QLabel(QStringLiteral("Tick databases or single records by clicking their box (or press Space)."), this);
  hint->setObjectName(QStringLiteral("Label2"));
  layout->addWidget(hint);

  tvwTree_ = new SelectionTreeView(QStringLiteral("tvwTree"), this);
  layout->addWidget(tvwTree_, 1);

  auto* buttons = new QHBoxLayout;
  buttons->addStretch(1);
  btnSplit_ = new QPushButton(QStringLiteral("Split Selected"), this);
  btnSplit_->setObjectName(QStringLiteral("btnSplit"));
  auto* exit = new QPushButton(QStringLiteral("Exit"), this);
  exit->setObjectName(QStringLiteral("btnExit"));
  buttons->addWidget(new WorkBar(*work_, QStringLiteral("pg"), QStringLiteral("Timer1"), this));
  buttons->addWidget(btnSplit_);
  buttons->addWidget(exit);
  layout->addLayout(buttons);
  connect(btnSplit_, &QPushButton::clicked, this, &frmSplit::btnSplit_Click);
  connect(exit, &QPushButton::clicked, this, &QDialog::close);
  resize(460, 520);
  SetBusy(true);
  CopyIntoView(*work_, ws.tree(), selection_, *tvwTree_, [this] { SetBusy(false); });
}

// The worker reads the selection tree: it must end before the members go.
frmSplit::~frmSplit() { work_->Abandon(); }

void frmSplit::btnSplit_Click() {
  const auto chosen = prompts_.ChooseFileToSave(this, DialogFilter("IPD Files (*.ipd)|*.ipd"));
  if (!chosen || chosen->path.isEmpty()) return;
  const std::string path = ToPath(chosen->path);
  SetBusy(true);
  using Done = Result<std::optional<Message>>;
  work_->Start<Done>([this, path](Progress& progress) { return Split(selection_, ws_.file().View(), path, &progress); },
                     [this](Done done) {
                       SetBusy(false);
                       if (!work_->cancelRequested()) TellOutcome(prompts_, this, done);
                     });
}

void frmSplit::SetBusy(bool busy) {
  tvwTree_->setEnabled(!busy);
  btnSplit_->setEnabled(!busy);
}

}  // namespace orchidlamp
