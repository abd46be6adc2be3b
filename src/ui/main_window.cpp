#include "ui/main_window.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFileInfo>
#include <QKeyEvent>
#include <QPushButton>
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
#include <algorithm>
#include <functional>

#include "convert/desktop_backup_writer.h"
#include "editing/service_book_editor.h"
#include "export/media_extraction.h"
#include "export/migration.h"
#include "platform/settings_store.h"
#include "ui/detail_panels.h"
#include "ui/export_frame.h"
#include "ui/background_work.h"
#include "ui/display_text.h"
#include "platform/file_association.h"
#include "ui/media_frame.h"
#include "ui/merge_dialog.h"
#include "ui/options_dialog.h"
#include "platform/program_folder.h"
#include "ui/service_book_dialog.h"
#include "ui/split_dialog.h"
#include "ui/splash_window.h"
#include "ui/tree_model.h"
#include "ui/tree_search.h"
#include "ui/user_prompts.h"
#include "ui/window_memory.h"
#include "ui/work_bar.h"

namespace orchidlamp {
namespace {

QString FromStd(std::string_view text) { return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())); }

// tvwMain: a keyboard move onto a node counts as a click on it, as a user takes
// it; a selection Qt makes by itself (focus coming back, a reset) does not.
class NodeTree final : public QTreeView {
 public:
  NodeTree(QWidget* parent, std::function<void(const QModelIndex&)> keyed) : QTreeView(parent), keyed_(std::move(keyed)) {}

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    const QModelIndex before = currentIndex();
    QTreeView::keyPressEvent(event);
    if (currentIndex() != before && currentIndex().isValid()) keyed_(currentIndex());
  }

 private:
  std::function<void(const QModelIndex&)> keyed_;
};

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

  tvwMain_ = new NodeTree(this, [this](const QModelIndex& index) { NodeClicked(index); });
  tvwMain_->setObjectName(QStringLiteral("tvwMain"));
  tvwMain_->setHeaderHidden(true);
  tvwMain_->setUniformRowHeights(true);
  tvwMain_->setIconSize(QSize(16, 16));
  tvwMain_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  model_ = new TreeModel(controller_.workspace().tree(), icons_, this);
  tvwMain_->setModel(model_);
  // A click on the node already selected runs the click again.
  connect(tvwMain_, &QTreeView::clicked, this, [this](const QModelIndex& index) { NodeClicked(index); });

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

  splitter_ = new QSplitter(Qt::Horizontal, this);
  splitter_->setObjectName(QStringLiteral("Splitter"));
  splitter_->addWidget(tvwMain_);
  splitter_->addWidget(right);
  splitter_->setStretchFactor(0, 2);
  splitter_->setStretchFactor(1, 3);
  splitter_->setSizes({340, 560});
  setCentralWidget(splitter_);

  work_ = new BackgroundWork(this);
  connect(work_, &BackgroundWork::progressed, this, [this](int permille) {
    if (mediaFrame_->isVisible()) mediaFrame_->ShowProgress(permille);
  });
  recent_ = StoredRecentFiles();
  BuildMenus();
  BuildStatusBar();
  connect(&controller_, &MainController::changed, this, &frmMain::Refresh);

  resize(920, 620);
  if (!restoreGeometry(StoredWindowState(QStringLiteral("Geometry")))) Centre();
  splitter_->restoreState(StoredWindowState(QStringLiteral("Splitter")));


  if (!qEnvironmentVariableIsSet("ORCHIDLAMP_NO_ASSOCIATION"))
    (void)RegisterFileAssociation(QCoreApplication::applicationFilePath());
  ResetWindow();
  EnsureMediaFolder(controller_.workspace().folders().program);
  Refresh();
}

// The worker reads the workspace: it must end before the members go.
frmMain::~frmMain() { work_->Abandon(); }

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
  mOpen_ = AddItem(mFile, "mOpen", QStringLiteral("&Open..."), &frmMain::mOpen_Click);
  mOpen_->setShortcut(QKeySequence::Open);
  mSaveas_ = AddItem(mFile, "mSaveas", QStringLiteral("&Save As/Convert To..."), &frmMain::mSaveas_Click);
  mMigrate_ = AddItem(mFile, "mMigrate", QStringLiteral("Export for &Another Phone..."), &frmMain::mMigrate_Click);
  mFile->addSeparator();
  mRecent_ = mFile->addMenu(QStringLiteral("&Recent Files"));
  mRecent_->setObjectName(QStringLiteral("mRecent"));
  mRecent_->menuAction()->setObjectName(QStringLiteral("mRecent"));
  RebuildRecentMenu();
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

  // The busy bar pg with its timer Timer1, and Cancel.
  sbrDB->addPermanentWidget(new WorkBar(*work_, QStringLiteral("pg"), QStringLiteral("Timer1"), sbrDB));
}

// Menu pictures by (menu, item) position; separators count as items.
void frmMain::ResetWindow() {
  menuImage_ = MenuImage();
  const std::array<std::tuple<const char*, int, int>, 11> pictures = {{{"pic1", 1, 1},
                                                                       {"pic2", 1, 2},
                                                                       {"pic3", 1, 7},  // Exit, after Another Phone, a separator and Recent Files
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
  if (busy()) return;
  mSaveas_->setEnabled(ws.menus().saveAs);
  mMigrate_->setEnabled(ws.menus().saveAs);
  mServicebook_->menuAction()->setEnabled(ws.menus().servicebook);
  mManipulate_->menuAction()->setEnabled(ws.menus().manipulate);
}

bool frmMain::busy() const { return loading_ || work_->busy(); }

// While work runs nothing may start a second piece of work or change what the
// running one reads.
void frmMain::ShowBusy(bool busy) {
  mOpen_->setEnabled(!busy);
  mRecent_->menuAction()->setEnabled(!busy);
  exportFrame_->setEnabled(!busy);
  if (busy) {
    mSaveas_->setEnabled(false);
    mMigrate_->setEnabled(false);
    mServicebook_->menuAction()->setEnabled(false);
    mManipulate_->menuAction()->setEnabled(false);
  } else {
    Refresh();
  }
}

void frmMain::Centre() {
  const QScreen* screen = this->screen() ? this->screen() : QGuiApplication::primaryScreen();
  if (!screen) return;
  const QRect area = screen->availableGeometry();
  move(area.x() + (area.width() - width()) / 2, area.y() + (area.height() - height()) / 2);
}

void frmMain::RebuildRecentMenu() {
  mRecent_->clear();
  for (int i = 0; i < recent_.size(); ++i) {
    const QString path = recent_[i];
    QAction* item = mRecent_->addAction(QStringLiteral("&%1 %2").arg(i + 1).arg(path));
    connect(item, &QAction::triggered, this, [this, path] { OpenRecent(path); });
  }
  mRecent_->menuAction()->setEnabled(!recent_.isEmpty() && !busy());
}

void frmMain::OpenRecent(const QString& path) {
  if (!QFileInfo::exists(path)) {
    recent_.removeAll(path);
    StoreRecentFiles(recent_);
    RebuildRecentMenu();
    prompts_.Tell(this, Message{"The file " + ToPath(path) + " no longer exists; it is taken off the recent files.", "",
                                MessageIcon::Exclamation});
    return;
  }
  OpenFile(path, BackupKindOf(ToPath(path)));
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
  if (busy()) return;
  CloseSplash();
  loading_ = true;
  // The workspace changes on the worker: nothing on this thread reads it until
  // the load is done.
  model_->Detach();
  panels_->HideAll();
  exportFrame_->state().visible = false;
  exportFrame_->Sync();
  mediaFrame_->hide();
  ResetWindow();
  ShowBusy(true);
  work_->Start<Status>([this, path, kind](Progress& progress) { return controller_.Load(path, kind, &progress); },
                       [this, path](Status status) { LoadDone(path, status); });
}

void frmMain::LoadDone(const QString& path, const Status& status) {
  loading_ = false;
  controller_.Loaded();
  model_->Rebuild();
  // Databases show under the expanded root; each database starts collapsed.
  tvwMain_->expand(model_->IndexOf(controller_.workspace().tree().Root()));
  ShowBusy(false);
  const bool cancelled = work_->cancelRequested();
  if (controller_.workspace().tree().size() >= 2) {
    recent_ = WithRecentFile(recent_, path);
    StoreRecentFiles(recent_);
    RebuildRecentMenu();
    prompts_.StartIn(QFileInfo(path).absolutePath());
  }
  if (!status && !cancelled) prompts_.Tell(this, status.failure().message);
}

void frmMain::NodeClicked(const QModelIndex& index) {
  if (busy()) return;
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
  ExportPanel& panel = exportFrame_->state();
  const Status prepared = PrepareExport(controller_.workspace(), panel);
  // The first scope that applies is chosen, so the first press exports something.
  if (prepared && std::none_of(panel.checked.begin(), panel.checked.end(), [](bool c) { return c; }))
    for (int i = 0; i < kExportScopes; ++i)
      if (i == kScopeTree || panel.optionVisible[static_cast<std::size_t>(i)]) {
        panel.Check(static_cast<ExportScope>(i));
        break;
      }
  exportFrame_->Sync();
  if (!prepared) prompts_.Tell(this, prepared.failure().message);
}

void frmMain::RunExport(int form) {
  if (busy()) return;
  ShowBusy(true);
  using Done = Result<std::optional<ExportDone>>;
  const ExportPanel panel = exportFrame_->state();
  work_->Start<Done>(
      [this, panel, form](Progress& progress) {
        return PressExport(controller_.workspace(), panel, static_cast<ExportForm>(form), &progress);
      },
      [this](Done done) {
        ShowBusy(false);
        if (!done) {
          if (!work_->cancelRequested()) prompts_.Tell(this, done.failure().message);
          return;
        }
        if (done.value()) prompts_.Tell(this, done.value()->message);
      });
}

void frmMain::epng_Click() { RunMedia(true); }
void frmMain::ejpg_Click() { RunMedia(false); }

void frmMain::RunMedia(bool png) {
  if (busy()) return;
  mediaFrame_->show();
  mediaFrame_->Reset();
  ShowBusy(true);
  work_->Start<Result<MediaExtraction>>(
      [this, png](Progress& progress) -> Result<MediaExtraction> {
        const Workspace& ws = controller_.workspace();
        return png ? ExtractPngImages(ws, &progress) : ExtractJpgImages(ws, &progress);
      },
      [this](Result<MediaExtraction> run) {
        ShowBusy(false);
        if (!run) {
          if (!work_->cancelRequested()) prompts_.Tell(this, run.failure().message);
          return;
        }
        mediaFrame_->ShowSaved(run->saved);
        if (run->failure)
          prompts_.Tell(this, run->failure->message);
        else if (run->success)
          prompts_.Tell(this, *run->success);
      });
}

// --- Dialogs of the editing and conversion work ------------------------------

void frmMain::mSaveas_Click() {
  const auto chosen = prompts_.ChooseFileToSave(this, DialogFilter(kSaveAsFilter));
  if (!chosen || chosen->path.isEmpty()) return;
  if (busy()) return;
  const std::string target = ToPath(chosen->path);
  const int filterIndex = chosen->filterIndex;
  ShowBusy(true);
  work_->Start<Result<Message>>(
      [this, target, filterIndex](Progress& progress) {
        return SaveAs(controller_.workspace(), target, filterIndex, &progress);
      },
      [this](Result<Message> saved) {
        ShowBusy(false);
        if (!saved && work_->cancelRequested()) return;
        prompts_.Tell(this, saved ? saved.value() : saved.failure().message);
      });
}

// The backup's records in the formats today's phones and programs import,
// into a folder the user picks; the list of files written ends it.
void frmMain::mMigrate_Click() {
  if (busy()) return;
  const auto folder = prompts_.ChooseFolder(this, QStringLiteral("Export for Another Phone"));
  if (!folder) return;
  MigrationOptions options;
  options.outDir = ToPath(*folder);
  options.charset = ReadStoredSettings().migrateCharset;
  ShowBusy(true);
  work_->Start<Result<MigrationReport>>(
      [this, options](Progress& progress) {
        return Migrate(controller_.workspace(), options, &progress, [this] { return work_->cancelRequested(); });
      },
      [this, folder = *folder](Result<MigrationReport> report) {
        ShowBusy(false);
        if (!report) {
          if (!work_->cancelRequested()) prompts_.Tell(this, report.failure().message);
          return;
        }
        if (report->cancelled) return;
        std::string text = report->files.empty() ? "The backup holds no records to export for another phone."
                                                 : "Written to " + ToPath(folder) + ":";
        for (const MigratedFile& file : report->files) text += "\n" + file.name + "\t" + std::to_string(file.count);
        for (const MigrationSkip& skip : report->skipped)
          text += "\nskipped " + std::to_string(skip.count) + " records of " + std::string(skip.kind);
        prompts_.Tell(this, Message{text, "Export for Another Phone", MessageIcon::Information});
      });
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
  // A dropped file may be named in any letter case.
  if (!MainController::KindOfGivenPath(path.toLower())) return std::nullopt;
  return path;
}

void frmMain::dragEnterEvent(QDragEnterEvent* event) {
  if (!busy() && DroppedPath(event->mimeData())) event->acceptProposedAction();
}

void frmMain::dropEvent(QDropEvent* event) {
  const auto path = DroppedPath(event->mimeData());
  if (!path || busy()) return;
  event->acceptProposedAction();
  const QString dropped = *path;
  const auto kind = MainController::KindOfGivenPath(dropped.toLower());
  // Opening runs after the drop returns, so the drag source is not kept waiting.
  QTimer::singleShot(0, this, [this, dropped, kind] { OpenFile(dropped, *kind); });
}

// Closing asks nothing: running work is cancelled, and a write it began is
// removed with it.
void frmMain::closeEvent(QCloseEvent* event) {
  work_->Abandon();
  loading_ = false;
  StoreWindowState(QStringLiteral("Geometry"), saveGeometry());
  StoreWindowState(QStringLiteral("Splitter"), splitter_->saveState());
  CloseSplash();
  QMainWindow::closeEvent(event);
}

}  // namespace orchidlamp
