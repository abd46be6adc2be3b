#include "screenshots/screenshot_tour.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QListWidget>
#include <QMessageBox>
#include <QPixmap>
#include <QPushButton>
#include <QRegularExpression>
#include <QTabWidget>
#include <QRadioButton>
#include <QTreeView>

#include "core/workspace.h"
#include "ui/export_frame.h"
#include "ui/background_work.h"
#include "ui/main_window.h"
#include "ui/media_frame.h"
#include "ui/merge_dialog.h"
#include "ui/options_dialog.h"
#include "ui/selection_tree_view.h"
#include "ui/service_book_dialog.h"
#include "ui/split_dialog.h"
#include "ui/tree_model.h"

namespace orchidlamp {
namespace {

void Settle() {
  for (int i = 0; i < 5; ++i) QApplication::processEvents();
}

class Camera {
 public:
  explicit Camera(const QString& folder) : folder_(folder) { QDir().mkpath(folder); }
  void Take(QWidget& widget, const QString& name) {
    widget.show();
    widget.raise();
    Settle();
    const QString file = name + QStringLiteral(".png");
    if (widget.grab().save(QDir(folder_).filePath(file))) written_.push_back(file);
  }
  const QStringList& written() const { return written_; }

 private:
  QString folder_;
  QStringList written_;
};

QString FileNamePart(QString text) {
  text.replace(QRegularExpression(QStringLiteral("[^A-Za-z0-9]+")), QStringLiteral("-"));
  return text.toLower();
}

// The first record of every database node, in tree order.
std::vector<std::pair<QString, NodeId>> FirstRecords(const DatabaseTree& tree) {
  std::vector<std::pair<QString, NodeId>> found;
  if (tree.empty()) return found;
  for (NodeId db : tree.Children(tree.Root()))
    if (tree.FirstChild(db) != kNoNode) found.emplace_back(QString::fromStdString(tree.Text(db)), tree.FirstChild(db));
  return found;
}

// Long work runs on a worker; the tour waits for it with events running.
template <class Owner>
void Settle(Owner& owner) {
  while (owner.work().busy()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
  QCoreApplication::processEvents();
}

void Select(frmMain& window, NodeId node) {
  const QModelIndex index = window.model()->IndexOf(node);
  window.tree()->expand(index.parent());
  window.tree()->setCurrentIndex(index);
  emit window.tree()->clicked(index);
  window.tree()->scrollTo(index);
}

// Ticks the first record of the first database and the whole second database
// of a selection tree, so the picture shows all three tick states.
void TickSome(SelectionTreeView& view) {
  DatabaseTree* tree = view.selection();
  if (!tree || tree->empty()) return;
  const NodeId root = tree->Root();
  int done = 0;
  for (NodeId db : tree->Children(root)) {
    if (done == 2) break;
    if (tree->FirstChild(db) == kNoNode) continue;
    view.Toggle(done == 0 ? tree->FirstChild(db) : db);
    ++done;
  }
}

}  // namespace

std::optional<ChosenFile> TourPrompts::ChooseFileToOpen(QWidget*, const QString&) {
  if (secondFile.isEmpty()) return std::nullopt;
  return ChosenFile{secondFile, 1};
}

QStringList RunScreenshotTour(frmMain& window, TourPrompts& prompts, const QString& folder) {
  Camera camera(folder);
  window.resize(1000, 680);
  camera.Take(window, QStringLiteral("window"));

  const Workspace& ws = window.controller().workspace();
  const auto records = FirstRecords(ws.tree());
  for (const auto& [database, node] : records) {
    Select(window, node);
    camera.Take(window, QStringLiteral("record-") + FileNamePart(database));
  }

  // The export panel, offered for an SMS message (or whatever kind comes first).
  for (const auto& [database, node] : records) {
    Select(window, node);
    window.mExport_Click();
    if (!window.exportFrame()->isHidden()) break;
  }
  if (auto* option = window.findChild<QRadioButton*>(QStringLiteral("ExOP1"))) option->click();
  camera.Take(window, QStringLiteral("dialog-export-panel"));
  window.exportFrame()->state().Cancel();
  window.exportFrame()->Sync();

  // The refusal of an export without a record, as its message box shows it.
  {
    QMessageBox box(QMessageBox::Warning, QStringLiteral("Please select record first:"),
                    QStringLiteral("No SMS, Address Book, Tasks, Calendar, Phone Calls, AutoText record selected for "
                                   "export.\r\nPlease select any single record then hit the export menu."),
                    QMessageBox::Ok, &window);
    camera.Take(box, QStringLiteral("dialog-export-refused"));
  }

  window.findChild<QAction*>(QStringLiteral("ejpg"))->trigger();
  Settle(window);
  if (window.mediaFrame()->list()->count() == 0) window.findChild<QAction*>(QStringLiteral("epng"))->trigger();
  Settle(window);
  camera.Take(window, QStringLiteral("dialog-media-panel"));
  window.mediaFrame()->hide();

  {
    frmSplit split(ws, prompts, &window);
    Settle(split);
    TickSome(*split.tvwTree());
    camera.Take(split, QStringLiteral("dialog-split"));
  }
  {
    prompts.secondFile = QString::fromStdString(ws.file().path);
    frmMerge merge(ws, prompts, &window);
    Settle(merge);
    merge.findChild<QPushButton*>(QStringLiteral("smBrowse"))->click();
    Settle(merge);
    TickSome(*merge.tvwfTree());
    TickSome(*merge.tvwsTree());
    camera.Take(merge, QStringLiteral("dialog-merge"));
  }

  for (const auto& [database, node] : records) {
    if (database != QStringLiteral("Service Book")) continue;
    Select(window, node);
    window.mEdit_Click();
    if (EditSBForm* editor = window.editor()) {
      camera.Take(*editor, QStringLiteral("dialog-edit-service-book"));
      if (auto* tabs = editor->findChild<QTabWidget*>(QStringLiteral("SSTab1"))) {
        tabs->setCurrentIndex(1);
        camera.Take(*editor, QStringLiteral("dialog-edit-service-book-network"));
      }
      editor->close();
    }
  }

  {
    QFileDialog save(&window, QString(), QString(),
                     QStringLiteral("BBB (Windows) Files (*.bbb);;BBB (Mac) Files (*.bbb);;IPD Files (*.ipd)"));
    save.setOption(QFileDialog::DontUseNativeDialog);
    save.setDirectory(QFileInfo(QString::fromStdString(ws.file().path)).absolutePath());
    save.setAcceptMode(QFileDialog::AcceptSave);
    save.resize(640, 420);
    camera.Take(save, QStringLiteral("dialog-save-as"));
  }
  {
    frmOptions options(prompts, &window);
    camera.Take(options, QStringLiteral("dialog-options"));
  }
  window.mAbout_Click();
  if (auto* about = window.findChild<QWidget*>(QStringLiteral("frmSplash"))) {
    camera.Take(*about, QStringLiteral("dialog-about"));
    about->close();
  }
  return camera.written();
}

}  // namespace orchidlamp
