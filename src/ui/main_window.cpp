#include "ui/main_window.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QElapsedTimer>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QProgressBar>
#include <QScreen>
#include <QScrollArea>
#include <QSplitter>
#include <QStatusBar>
#include <QTimer>
#include <QTreeView>
#include <QUrl>
#include <QVBoxLayout>

#include "convert/desktop_backup_writer.h"
#include "editing/service_book_editor.h"
#include "export/media_extraction.h"
#include "ui/detail_panels.h"
#include "ui/export_frame.h"
#include "ui/display_text.h"
#include "platform/file_association.h"
#include "ui/media_frame.h"
#include "ui/merge_dialog.h"
#include "ui/options_dialog.h"
#include "platform/program_folder.h"
#include "ui/long_work.h"
#include "ui/service_book_dialog.h"
#include "ui/split_dialog.h"
#include "ui/splash_window.h"
#include "ui/tree_model.h"
#include "ui/tree_search.h"
#include "ui/user_prompts.h"

namespace orchidlamp {
namespace {

QString FromStd(std::string_view text) { return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())); }

}  // namespace

frmMain::frmMain(std::string programFolder, UserPrompts* prompts, QWidget* parent)
    : QMainWindow(parent),
      ownPrompts_(prompts ? nullptr : std::make_unique<DialogPrompts>()),
      prompts_(prompts ? *prompts : *ownPrompts_),
      controller_(programFolder) {
  setObjectName(QStringLiteral("frmMain"));
  setWindowTitle(FromStd(kWindowCaption));
  setWindowIcon(icons_.Named(QStringLiteral("splash")));
  setAcceptDrops(true);

  tvwMain_ = new QTreeView(this);
  tvwMain_->setObjectName(QStringLiteral("tvwMain"));
  tvwMain_->setHeaderHidden(true);
  tvwMain_->setUniformRowHeights(true);
  tvwMain_->setIconSize(QSize(16, 16));
  tvwMain_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  model_ = new TreeModel(controller_.workspace().tree(), icons_, this);
  tvwMain_->setModel(model_);
  connect(tvwMain_->selectionModel(), &QItemSelectionModel::currentChanged, this,
          [this](const QModelIndex& current) { NodeClicked(current); });

  panels_ = new DetailPanels(this);
  connect(panels_, &DetailPanels::serviceBookBoxEdited, this, [this](int box, const QString& text) {
    controller_.workspace().hrtnet[static_cast<std::size_t>(box)] = ToRecordText(text);
  });
  auto* detailScroll = new QScrollArea(this);
  detailScroll->setObjectName(QStringLiteral("DetailScroll"));
  detailScroll->setWidgetResizable(true);
  detailScroll->setFrameShape(QFrame::NoFrame);
  detailScroll->setWidget(panels_);

  // The right side: the export and media panels (hidden until their commands)
  // above the record detail frames.
  exportFrame_ = new ExportFrame(this);
  connect(exportFrame_, &ExportFrame::exportRequested, this,
          [this](ExportForm form) { RunExport(static_cast<int>(form)); });
  mediaFrame_ = new MediaFrame(this);
  connect(mediaFrame_, &MediaFrame::openRequested, this, [this](const QString& path) { prompts_.ShowFile(path); });
  auto* right = new QWidget(this);
  auto* rightLayout = new QVBoxLayout(right);
  rightLayout->setContentsMargins(0, 0, 0, 0);
  rightLayout->addWidget(exportFrame_);
  rightLayout->addWidget(mediaFrame_);
  rightLayout->addWidget(detailScroll, 1);

  auto* splitter = new QSplitter(Qt::Horizontal, this);
  splitter->addWidget(tvwMain_);
  splitter->addWidget(right);
  splitter->setStretchFactor(0, 2);
  splitter->setStretchFactor(1, 3);
  splitter->setSizes({340, 560});
  setCentralWidget(splitter);

  BuildMenus();
  BuildStatusBar();
  connect(&controller_, &MainController::changed, this, &frmMain::Refresh);

  resize(920, 620);
  Centre();

  timer1_ = new QTimer(this);
  timer1_->setObjectName(QStringLiteral("Timer1"));
  timer1_->setInterval(30);
  connect(timer1_, &QTimer::timeout, this, &frmMain::Timer1_Timer);

  if (!qEnvironmentVariableIsSet("ORCHIDLAMP_NO_ASSOCIATION"))
    (void)RegisterFileAssociation(QCoreApplication::applicationFilePath());
  ResetWindow();
  EnsureMediaFolder(controller_.workspace().folders().program);
  Refresh();
}

frmMain::~frmMain() = default;

EditSBForm* frmMain::editor() const { return editor_.data(); }

QAction* frmMain::AddItem(QMenu* menu, const char* name, const QString& caption, void (frmMain::*slot)()) {
  QAction* action = menu->addAction(caption);
  action->setObjectName(QString::fromLatin1(name));
  connect(action, &QAction::triggered, this, slot);
  return action;
}

void frmMain::BuildMenus() {
  QMenuBar* bar = menuBar();
  bar->setObjectName(QStringLiteral("MenuBar"));

  QMenu* mFile = bar->addMenu(QStringLiteral("&File"));
  mFile->setObjectName(QStringLiteral("mFile"));
  QAction* mOpen = AddItem(mFile, "mOpen", QStringLiteral("&Open..."), &frmMain::mOpen_Click);
  mOpen->setShortcut(QKeySequence::Open);
  mSaveas_ = AddItem(mFile, "mSaveas", QStringLiteral("&Save As/Convert To..."), &frmMain::mSaveas_Click);
  mFile->addSeparator();
  QAction* mExit = AddItem(mFile, "mExit", QStringLiteral("E&xit"), &frmMain::mExit_Click);
  mExit->setShortcut(QKeySequence::Quit);

  mServicebook_ = bar->addMenu(QStringLiteral("&Service Book"));
  mServicebook_->setObjectName(QStringLiteral("mServicebook"));
  AddItem(mServicebook_, "mEdit", QStringLiteral("&Edit..."), &frmMain::mEdit_Click);

  mManipulate_ = bar->addMenu(QStringLiteral("&Manipulate"));
  mManipulate_->setObjectName(QStringLiteral("mManipulate"));
  AddItem(mManipulate_, "mExport", QStringLiteral("Ex&port..."), &frmMain::mExport_Click);
  mManipulate_->addSeparator();
  AddItem(mManipulate_, "mMerge", QStringLiteral("&Merge..."), &frmMain::mMerge_Click);
  AddItem(mManipulate_, "mSplit", QStringLiteral("Sp&lit..."), &frmMain::mSplit_Click);
  mManipulate_->addSeparator();
  QAction* mSearch = AddItem(mManipulate_, "mSearch", QStringLiteral("&Search..."), &frmMain::mSearch_Click);
  mSearch->setShortcut(QKeySequence::Find);
  mManipulate_->addSeparator();
  QMenu* mMedia = mManipulate_->addMenu(QStringLiteral("Search and Export &Media"));
  mMedia->setObjectName(QStringLiteral("mMedia"));
  mMedia->menuAction()->setObjectName(QStringLiteral("mMedia"));
  AddItem(mMedia, "epng", QStringLiteral("PNG Images..."), &frmMain::epng_Click);
  AddItem(mMedia, "ejpg", QStringLiteral("JPG Images..."), &frmMain::ejpg_Click);

  QMenu* mOptions = bar->addMenu(QStringLiteral("&Options"));
  mOptions->setObjectName(QStringLiteral("mOptions"));
  AddItem(mOptions, "mSettings", QStringLiteral("&Settings..."), &frmMain::mSettings_Click);

  QMenu* mhelp = bar->addMenu(QStringLiteral("&Help"));
  mhelp->setObjectName(QStringLiteral("mhelp"));
  AddItem(mhelp, "mMainhelp", QStringLiteral("Orchidlamp H&elp"), &frmMain::mMainhelp_Click);
  AddItem(mhelp, "mAbout", QStringLiteral("&About Orchidlamp"), &frmMain::mAbout_Click);
}

void frmMain::BuildStatusBar() {
  QStatusBar* sbrDB = statusBar();
  sbrDB->setObjectName(QStringLiteral("sbrDB"));
  mainPanel_ = new QLabel(sbrDB);
  mainPanel_->setObjectName(QStringLiteral("main"));
  detailsPanel_ = new QLabel(sbrDB);
  detailsPanel_->setObjectName(QStringLiteral("details"));
  sbrDB->addWidget(mainPanel_);
  sbrDB->addWidget(detailsPanel_, 1);

  waitFrame_ = new QFrame(sbrDB);
  waitFrame_->setObjectName(QStringLiteral("wait_frame"));
  auto* waitLayout = new QHBoxLayout(waitFrame_);
  waitLayout->setContentsMargins(0, 0, 0, 0);
  pg_ = new QProgressBar(waitFrame_);
  pg_->setObjectName(QStringLiteral("pg"));
  pg_->setRange(0, 100);
  pg_->setTextVisible(false);
  pg_->setFixedWidth(160);
  waitLayout->addWidget(pg_);
  sbrDB->addPermanentWidget(waitFrame_);
  waitFrame_->hide();
}

// Menu pictures by (menu, item) position; separators count as items.
void frmMain::ResetWindow() {
  menuImage_ = MenuImage();
  const std::array<std::tuple<const char*, int, int>, 11> pictures = {{{"pic1", 1, 1},
                                                                       {"pic2", 1, 2},
                                                                       {"pic3", 1, 4},
                                                                       {"pic4", 2, 1},
                                                                       {"pic5", 3, 1},
                                                                       {"pic6", 3, 3},
                                                                       {"pic7", 3, 4},
                                                                       {"pic8", 3, 6},
                                                                       {"pic11", 3, 8},
                                                                       {"pic9", 4, 1},
                                                                       {"pic10", 5, 1}}};
  for (const auto& [name, menu, item] : pictures) menuImage_.AddImage(icons_.Named(QString::fromLatin1(name)), item, menu);
  menuImage_.ApplyImages(menuBar());
  mSaveas_->setEnabled(false);
  mServicebook_->menuAction()->setEnabled(false);
  mManipulate_->menuAction()->setEnabled(false);
}

void frmMain::Refresh() {
  const Workspace& ws = controller_.workspace();
  setWindowTitle(FromPath(ws.Caption()));
  mainPanel_->setText(FromPath(ws.status().main));
  detailsPanel_->setText(FromStd(ws.status().details));
  detailsPanel_->setVisible(!ws.status().details.empty());
  if (loading_) return;
  mSaveas_->setEnabled(ws.menus().saveAs);
  mServicebook_->menuAction()->setEnabled(ws.menus().servicebook);
  mManipulate_->menuAction()->setEnabled(ws.menus().manipulate);
}

void frmMain::Centre() {
  const QScreen* screen = this->screen() ? this->screen() : QGuiApplication::primaryScreen();
  if (!screen) return;
  const QRect area = screen->availableGeometry();
  move(area.x() + (area.width() - width()) / 2, area.y() + (area.height() - height()) / 2);
}

void frmMain::Timer1_Timer() {
  pg_->setVisible(true);
  pg_->setValue(pg_->value() + 1 >= 100 ? 1 : pg_->value() + 1);
}

void frmMain::CloseSplash() {
  if (splash_) splash_->close();
}

void frmMain::OpenCommandLine(const QStringList& arguments) {
  const QString path = MainController::CommandLinePath(arguments);
  if (!path.isEmpty()) OpenGivenPath(path);
}

void frmMain::OpenGivenPath(const QString& path) {
  if (const auto kind = MainController::KindOfGivenPath(path)) OpenFile(path, *kind);
}

void frmMain::OpenFile(const QString& path, BackupKind kind) {
  if (loading_) return;
  CloseSplash();
  loading_ = true;
  model_->Detach();
  panels_->HideAll();
  ResetWindow();
  waitFrame_->show();
  timer1_->start();
  // The load runs off the window's thread: parts of it (reading the file,
  // converting a desktop backup) report no progress for a while, and the window
  // must keep painting. The model is detached and user input waits, so nothing
  // reads the workspace meanwhile.
  const Status status = RunResponsive([&] { return controller_.Load(path, kind); });
  controller_.Loaded();
  timer1_->stop();
  waitFrame_->hide();
  model_->Rebuild();
  loading_ = false;
  // Databases show under the expanded root; each database starts collapsed.
  tvwMain_->expand(model_->IndexOf(controller_.workspace().tree().Root()));
  panels_->HideAll();
  Refresh();
  if (!status) prompts_.Tell(this, status.failure().message);
}

void frmMain::NodeClicked(const QModelIndex& index) {
  if (loading_) return;
  panels_->HideAll();
  const NodeId node = model_->NodeOf(index);
  if (node == kNoNode) return;
  const ClickResult result = controller_.Click(node);
  if (result.panel) panels_->Show(*result.panel, result.members, controller_.workspace().hrtnet);
}

void frmMain::mOpen_Click() {
  const auto chosen = prompts_.ChooseFileToOpen(this, MainController::OpenFilter());
  if (!chosen) return;
  OpenFile(chosen->path, MainController::KindOfFilterIndex(chosen->filterIndex));
}

void frmMain::mExit_Click() { close(); }

void frmMain::mSearch_Click() {
  controller_.BeginSearch();
  for (;;) {
    const auto text = prompts_.AskText(this, QStringLiteral("Find"), QStringLiteral("Find what?"));
    if (!text || text->isEmpty()) return;
    const NodeId found = controller_.NextMatch(*text);
    if (found == kNoNode) return;
    const QModelIndex index = model_->IndexOf(found);
    tvwMain_->expand(index.parent());
    tvwMain_->setCurrentIndex(index);
    tvwMain_->scrollTo(index);
    const QString question = FindNextQuestion(NodeDisplayText(controller_.workspace().tree(), found));
    if (!prompts_.AskYesNo(this, QStringLiteral("Find"), question)) return;
  }
}

void frmMain::mSettings_Click() {
  frmOptions options(prompts_, this);
  options.exec();
}

void frmMain::mMainhelp_Click() {
  prompts_.Tell(this, Message{"Please check Orchidlamp folder for the help PDF file", "", MessageIcon::None});
}

void frmMain::mAbout_Click() {
  if (!splash_) splash_ = new frmSplash(icons_, this);
  splash_->adjustSize();
  splash_->move(geometry().center() - splash_->rect().center());
  splash_->show();
  splash_->raise();
  splash_->activateWindow();
}

void frmMain::mExport_Click() {
  const Status prepared = PrepareExport(controller_.workspace(), exportFrame_->state());
  exportFrame_->Sync();
  if (!prepared) prompts_.Tell(this, prepared.failure().message);
}

void frmMain::RunExport(int form) {
  EventPump progress;
  const auto done = PressExport(controller_.workspace(), exportFrame_->state(), static_cast<ExportForm>(form), &progress);
  if (!done) {
    prompts_.Tell(this, done.failure().message);
    return;
  }
  if (done.value()) prompts_.Tell(this, done.value()->message);
}

void frmMain::epng_Click() { RunMedia(true); }
void frmMain::ejpg_Click() { RunMedia(false); }

void frmMain::RunMedia(bool png) {
  mediaFrame_->show();
  mediaFrame_->Reset();
  const Workspace& ws = controller_.workspace();
  const MediaExtraction run =
      png ? ExtractPngImages(ws, &mediaFrame_->progress()) : ExtractJpgImages(ws, &mediaFrame_->progress());
  mediaFrame_->ShowSaved(run.saved);
  if (run.failure)
    prompts_.Tell(this, run.failure->message);
  else if (run.success)
    prompts_.Tell(this, *run.success);
}

// --- Dialogs of the editing and conversion work ------------------------------

void frmMain::mSaveas_Click() {
  const auto chosen = prompts_.ChooseFileToSave(this, DialogFilter(kSaveAsFilter));
  if (!chosen || chosen->path.isEmpty()) return;
  const std::string target = ToPath(chosen->path);
  const int filterIndex = chosen->filterIndex;
  const Workspace& ws = controller_.workspace();
  // The conversion reads the open file again and zips it; the window keeps
  // painting, and the busy bar says why nothing else answers.
  waitFrame_->show();
  timer1_->start();
  const Result<Message> saved = RunResponsive([&] { return SaveAs(ws, target, filterIndex); });
  timer1_->stop();
  waitFrame_->hide();
  prompts_.Tell(this, saved ? saved.value() : saved.failure().message);
}

void frmMain::mEdit_Click() {
  auto opened = EditSB::Open(controller_.workspace());
  if (!opened) {
    prompts_.Tell(this, opened.failure().message);
    return;
  }
  if (!opened.value()) return;
  if (!editor_) editor_ = new EditSBForm(controller_.workspace(), prompts_, this);
  editor_->Load(std::move(*opened.value()));
  editor_->show();
  editor_->raise();
  editor_->activateWindow();
}

void frmMain::mMerge_Click() {
  frmMerge merge(controller_.workspace(), prompts_, this);
  merge.exec();
}

void frmMain::mSplit_Click() {
  frmSplit split(controller_.workspace(), prompts_, this);
  split.exec();
}

// ---------------------------------------------------------------------------

std::optional<QString> frmMain::DroppedPath(const QMimeData* data) {
  if (!data || !data->hasUrls() || data->urls().size() != 1) return std::nullopt;
  const QUrl url = data->urls().front();
  if (!url.isLocalFile()) return std::nullopt;
  const QString path = url.toLocalFile();
  if (!MainController::KindOfGivenPath(path)) return std::nullopt;
  return path;
}

void frmMain::dragEnterEvent(QDragEnterEvent* event) {
  if (!loading_ && DroppedPath(event->mimeData())) event->acceptProposedAction();
}

void frmMain::dropEvent(QDropEvent* event) {
  const auto path = DroppedPath(event->mimeData());
  if (!path || loading_) return;
  event->acceptProposedAction();
  // Opening runs after the drop returns, so the drag source is not kept waiting.
  const QString dropped = *path;
  QTimer::singleShot(0, this, [this, dropped] { OpenGivenPath(dropped); });
}

void frmMain::closeEvent(QCloseEvent* event) {
  if (loading_) {
    event->ignore();
    return;
  }
  CloseSplash();
  QMainWindow::closeEvent(event);
}

}  // namespace orchidlamp
