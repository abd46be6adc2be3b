#include "ui/merge_dialog.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "core/workspace.h"
#include "editing/merge.h"
#include "editing/selection_tree.h"
#include "ui/display_text.h"
#include "ui/long_work.h"
#include "ui/selection_tree_view.h"
#include "ui/user_prompts.h"

namespace orchidlamp {
namespace {

constexpr std::string_view kIpdFilter = "IPD Files (*.ipd)|*.ipd";

}  // namespace

frmMerge::frmMerge(const Workspace& ws, UserPrompts& prompts, QWidget* parent)
    : QDialog(parent), ws_(ws), prompts_(prompts), first_(RunResponsive([&ws] { return LoadSelectionTree(ws.tree()); })) {
  setObjectName(QStringLiteral("frmMerge"));
  setWindowTitle(QStringLiteral("Merge IPD files"));
  auto* layout = new QVBoxLayout(this);

  auto* trees = new QHBoxLayout;
  auto* firstFrame = new QGroupBox(QStringLiteral("First IPD file (open now)"), this);
  firstFrame->setObjectName(QStringLiteral("Frame1"));
  auto* firstLayout = new QVBoxLayout(firstFrame);
  tvwfTree_ = new SelectionTreeView(QStringLiteral("tvwfTree"), firstFrame);
  tvwfTree_->SetTree(&first_);
  firstLayout->addWidget(tvwfTree_);
  trees->addWidget(firstFrame, 1);

  auto* secondFrame = new QGroupBox(QStringLiteral("Second IPD file"), this);
  secondFrame->setObjectName(QStringLiteral("Frame2"));
  auto* secondLayout = new QVBoxLayout(secondFrame);
  auto* browseRow = new QHBoxLayout;
  smIPD_ = new QLineEdit(secondFrame);
  smIPD_->setObjectName(QStringLiteral("smIPD"));
  smIPD_->setReadOnly(true);
  auto* browse = new QPushButton(QStringLiteral("Browse..."), secondFrame);
  browse->setObjectName(QStringLiteral("smBrowse"));
  browseRow->addWidget(smIPD_, 1);
  browseRow->addWidget(browse);
  secondLayout->addLayout(browseRow);
  tvwsTree_ = new SelectionTreeView(QStringLiteral("tvwsTree"), secondFrame);
  secondLayout->addWidget(tvwsTree_);
  trees->addWidget(secondFrame, 1);
  layout->addLayout(trees, 1);

  auto* buttons = new QHBoxLayout;
  buttons->addWidget(new QLabel(QStringLiteral("Tick the databases of either file to merge (click the box or press Space)."), this));
  buttons->addStretch(1);
  auto* merge = new QPushButton(QStringLiteral("Merge Selected"), this);
  merge->setObjectName(QStringLiteral("btnMerge"));
  auto* exit = new QPushButton(QStringLiteral("Exit"), this);
  exit->setObjectName(QStringLiteral("btnExit"));
  buttons->addWidget(merge);
  buttons->addWidget(exit);
  layout->addLayout(buttons);
  connect(browse, &QPushButton::clicked, this, &frmMerge::smBrowse_Click);
  connect(merge, &QPushButton::clicked, this, &frmMerge::btnMerge_Click);
  connect(exit, &QPushButton::clicked, this, &QDialog::close);
  resize(820, 540);
}

void frmMerge::smBrowse_Click() {
  const auto chosen = prompts_.ChooseFileToOpen(this, DialogFilter(kIpdFilter));
  if (!chosen || chosen->path.isEmpty()) return;
  smIPD_->setText(chosen->path);
  const std::string path = ToPath(chosen->path);
  const RecordLabeller& labeller = ws_.labeller();
  setEnabled(false);
  // The old tree stays shown until the new file is in.
  auto loaded = RunResponsive([&] { return BrowseSecondFile(path, labeller); });
  setEnabled(true);
  tvwsTree_->SetTree(nullptr);
  second_.reset();
  if (!loaded) {
    prompts_.Tell(this, loaded.failure().message);
    return;
  }
  second_.emplace(std::move(loaded.value()));
  tvwsTree_->SetTree(&second_->tree);
}

void frmMerge::btnMerge_Click() {
  const auto chosen = prompts_.ChooseFileToSave(this, DialogFilter(kIpdFilter));
  if (!chosen || chosen->path.isEmpty()) return;
  const std::string path = ToPath(chosen->path);
  const DatabaseTree noTree;
  const MergeSource first{first_, ws_.file().View()};
  const MergeSource second{second_ ? second_->tree : noTree, second_ ? ByteView(second_->bytes) : ByteView()};
  setEnabled(false);
  const auto done = RunResponsive([&] { return Merge(first, second, path); });
  setEnabled(true);
  if (!done) {
    prompts_.Tell(this, done.failure().message);
    return;
  }
  if (done.value()) prompts_.Tell(this, *done.value());
}

}  // namespace orchidlamp
