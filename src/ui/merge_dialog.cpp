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
#include "ui/background_work.h"
#include "ui/selection_tree_view.h"
#include "ui/user_prompts.h"
#include "ui/work_bar.h"

namespace orchidlamp {
namespace {

constexpr std::string_view kIpdFilter = "IPD Files (*.ipd)|*.ipd";

}  // namespace

frmMerge::frmMerge(const Workspace& ws, UserPrompts& prompts, QWidget* parent)
    : QDialog(parent), ws_(ws), prompts_(prompts), work_(new BackgroundWork(this)) {
  setObjectName(QStringLiteral("frmMerge"));
  setWindowTitle(QStringLiteral("Merge IPD files"));
  auto* layout = new QVBoxLayout(this);

  auto* trees = new QHBoxLayout;
  auto* firstFrame = new QGroupBox(QStringLiteral("First IPD file (open now)"), this);
  firstFrame->setObjectName(QStringLiteral("Frame1"));
  auto* firstLayout = new QVBoxLayout(firstFrame);
  tvwfTree_ = new SelectionTreeView(QStringLiteral("tvwfTree"), firstFrame);
  firstLayout->addWidget(tvwfTree_);
  trees->addWidget(firstFrame, 1);

  auto* secondFrame = new QGroupBox(QStringLiteral("Second IPD file"), this);
  secondFrame->setObjectName(QStringLiteral("Frame2"));
  auto* secondLayout = new QVBoxLayout(secondFrame);
  auto* browseRow = new QHBoxLayout;
  smIPD_ = new QLineEdit(secondFrame);
  smIPD_->setObjectName(QStringLiteral("smIPD"));
  smIPD_->setReadOnly(true);
  smBrowse_ = new QPushButton(QStringLiteral("Browse..."), secondFrame);
  smBrowse_->setObjectName(QStringLiteral("smBrowse"));
  browseRow->addWidget(smIPD_, 1);
  browseRow->addWidget(smBrowse_);
  secondLayout->addLayout(browseRow);
  tvwsTree_ = new SelectionTreeView(QStringLiteral("tvwsTree"), secondFrame);
  secondLayout->addWidget(tvwsTree_);
  trees->addWidget(secondFrame, 1);
  layout->addLayout(trees, 1);

  auto* buttons = new QHBoxLayout;
  buttons->addWidget(new QLabel(QStringLiteral("Tick the databases of either file to merge (click the box or press Space)."), this));
  buttons->addStretch(1);
  btnMerge_ = new QPushButton(QStringLiteral("Merge Selected"), this);
  btnMerge_->setObjectName(QStringLiteral("btnMerge"));
  auto* exit = new QPushButton(QStringLiteral("Exit"), this);
  exit->setObjectName(QStringLiteral("btnExit"));
  buttons->addWidget(new WorkBar(*work_, QStringLiteral("pg"), QStringLiteral("Timer1"), this));
  buttons->addWidget(btnMerge_);
  buttons->addWidget(exit);
  layout->addLayout(buttons);
  connect(smBrowse_, &QPushButton::clicked, this, &frmMerge::smBrowse_Click);
  connect(btnMerge_, &QPushButton::clicked, this, &frmMerge::btnMerge_Click);
  connect(exit, &QPushButton::clicked, this, &QDialog::close);
  resize(820, 540);
  SetBusy(true);
  CopyIntoView(*work_, ws.tree(), first_, *tvwfTree_, [this] { SetBusy(false); });
}

// The worker reads the selection trees: it must end before the members go.
frmMerge::~frmMerge() { work_->Abandon(); }

void frmMerge::smBrowse_Click() {
  const auto chosen = prompts_.ChooseFileToOpen(this, DialogFilter(kIpdFilter));
  if (!chosen || chosen->path.isEmpty()) return;
  smIPD_->setText(chosen->path);
  const std::string path = ToPath(chosen->path);
  const RecordLabeller& labeller = ws_.labeller();
  SetBusy(true);
  // The old tree stays shown until the new file is in.
  using Loaded = decltype(BrowseSecondFile(path, labeller));
  work_->Start<Loaded>([path, &labeller](Progress&) { return BrowseSecondFile(path, labeller); },
                       [this](Loaded loaded) {
                         SetBusy(false);
                         tvwsTree_->SetTree(nullptr);
                         second_.reset();
                         if (!loaded) {
                           prompts_.Tell(this, loaded.failure().message);
                           return;
                         }
                         second_.emplace(std::move(loaded.value()));
                         tvwsTree_->SetTree(&second_->tree);
                       });
}

void frmMerge::btnMerge_Click() {
  const auto chosen = prompts_.ChooseFileToSave(this, DialogFilter(kIpdFilter));
  if (!chosen || chosen->path.isEmpty()) return;
  const std::string path = ToPath(chosen->path);
  SetBusy(true);
  using Done = Result<std::optional<Message>>;
  work_->Start<Done>(
      [this, path](Progress& progress) {
        const DatabaseTree noTree;
        const MergeSource first{first_, ws_.file().View()};
        const MergeSource second{second_ ? second_->tree : noTree, second_ ? ByteView(second_->bytes) : ByteView()};
        return Merge(first, second, path, &progress);
      },
      [this](Done done) {
        SetBusy(false);
        if (!work_->cancelRequested()) TellOutcome(prompts_, this, done);
      });
}

void frmMerge::SetBusy(bool busy) {
  for (QWidget* w : std::initializer_list<QWidget*>{tvwfTree_, tvwsTree_, smBrowse_, btnMerge_}) w->setEnabled(!busy);
}

}  // namespace orchidlamp
