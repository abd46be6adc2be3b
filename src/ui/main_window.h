#pragma once

// frmMain: the program's window. The tree of the open backup on the left, the
// record detail frames on the right, the menu bar with every command, the status
// bar sbrDB with its "main" and "details" panels and the busy bar pg. The logic
// lives in MainController; this class binds widgets to it and puts questions to
// the user through UserPrompts.

#include <QMainWindow>
#include <QPointer>
#include <QStringList>
#include <memory>
#include <optional>
#include <string>

#include "convert/open_backup.h"
#include "ui/icon_set.h"
#include "ui/main_controller.h"
#include "ui/menu_image.h"

class QAction;
class QLabel;
class QMenu;
class QMimeData;
class QSplitter;
class QTreeView;

namespace orchidlamp {

class BackgroundWork;
class DetailPanels;
class EditSBForm;
class ExportFrame;
class MediaFrame;
class TreeModel;
class UserPrompts;
class frmSplash;

class frmMain final : public QMainWindow {
  Q_OBJECT
 public:
  // `prompts` null: the real dialogs. The window does not own given prompts.
  explicit frmMain(std::string programFolder, UserPrompts* prompts = nullptr, QWidget* parent = nullptr);
  ~frmMain() override;

  // The last start-up step: the whole command line after the program name is
  // the path; one that does not end in ".ipd" or ".bbb" is ignored silently.
  void OpenCommandLine(const QStringList& arguments);
  // Open with a given path: the path rule decides the kind, or nothing happens.
  void OpenGivenPath(const QString& path);
  // Loads a backup as Open does once its path and kind are known. The load runs
  // on the background worker; the tree shows it when it is done.
  void OpenFile(const QString& path, BackupKind kind);
  // Opens an entry of File > recent files; a file that has gone is taken off
  // the list with a message.
  void OpenRecent(const QString& path);

  MainController& controller() { return controller_; }
  TreeModel* model() const { return model_; }
  QTreeView* tree() const { return tvwMain_; }
  DetailPanels* panels() const { return panels_; }
  ExportFrame* exportFrame() const { return exportFrame_; }
  MediaFrame* mediaFrame() const { return mediaFrame_; }
  bool loading() const { return loading_; }
  // Long work (a load, Save As, an export, a media scan) is running.
  bool busy() const;
  BackgroundWork& work() { return *work_; }
  QStringList recentFiles() const { return recent_; }
  // The service-book editor once mEdit has made it (one instance, modeless).
  EditSBForm* editor() const;
  UserPrompts& prompts() { return prompts_; }

 public slots:
  void mOpen_Click();
  void mSaveas_Click();
  void mMigrate_Click();
  void mExit_Click();
  void mEdit_Click();
  void mExport_Click();
  void mMerge_Click();
  void mSplit_Click();
  void mSearch_Click();
  void epng_Click();
  void ejpg_Click();
  void mSettings_Click();
  void mMainhelp_Click();
  void mAbout_Click();

 protected:
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

 private:
  QAction* AddItem(QMenu* menu, const char* name, const QString& caption, void (frmMain::*slot)());
  void BuildMenus();
  void BuildStatusBar();
  void ResetWindow();
  void Refresh();
  void NodeClicked(const QModelIndex& index);
  void ShowBusy(bool busy);
  void LoadDone(const QString& path, const Status& status);
  void RebuildRecentMenu();
  void RunExport(int form);
  void RunMedia(bool png);
  void CloseSplash();
  void Centre();
  static std::optional<QString> DroppedPath(const QMimeData* data);

  std::unique_ptr<UserPrompts> ownPrompts_;
  UserPrompts& prompts_;
  IconSet icons_;
  MainController controller_;
  MenuImage menuImage_;
  TreeModel* model_ = nullptr;
  QTreeView* tvwMain_ = nullptr;
  DetailPanels* panels_ = nullptr;
  ExportFrame* exportFrame_ = nullptr;
  MediaFrame* mediaFrame_ = nullptr;
  QLabel* mainPanel_ = nullptr;
  QLabel* detailsPanel_ = nullptr;
  QSplitter* splitter_ = nullptr;
  BackgroundWork* work_ = nullptr;
  QAction* mOpen_ = nullptr;
  QMenu* mRecent_ = nullptr;
  QStringList recent_;
  QMenu* mServicebook_ = nullptr;
  QMenu* mManipulate_ = nullptr;
  QAction* mSaveas_ = nullptr;
  QAction* mMigrate_ = nullptr;
  QPointer<frmSplash> splash_;
  QPointer<EditSBForm> editor_;
  bool loading_ = false;
};

}  // namespace orchidlamp
