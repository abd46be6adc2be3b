#pragma once

// The main window's logic without a widget: the workspace, the open flow, node
// clicks and the search counter. The window binds its widgets to this and shows
// what it returns; tests drive it directly.

#include <QObject>
#include <QString>
#include <QStringList>
#include <optional>
#include <string>

#include "convert/open_backup.h"
#include "core/workspace.h"
#include "records/record_click.h"
#include "records/record_kinds.h"

namespace orchidlamp {

class MainController final : public QObject {
  Q_OBJECT
 public:
  // `programFolder` receives media and contact pictures.
  explicit MainController(std::string programFolder, QObject* parent = nullptr);

  Workspace& workspace() { return ws_; }
  const Workspace& workspace() const { return ws_; }

  // The open dialog's filter in the form the dialog takes, with IPD first: the
  // chosen filter's 1-based index says which kind of file was picked.
  static QString OpenFilter();
  static BackupKind KindOfFilterIndex(int filterIndex);
  // A path given on the command line or dropped on the window: ".ipd" or ".bbb"
  // as its last four characters, compared case-sensitively; anything else is
  // ignored.
  static std::optional<BackupKind> KindOfGivenPath(const QString& path);
  // The whole command line after the program name, as one path: words joined by
  // single spaces, quotes left as they are.
  static QString CommandLinePath(const QStringList& arguments);

  // Loads the backup with the settings stored now. The tree is rebuilt even when
  // the load fails part way; the failure carries the loader's message.
  Status Open(const QString& path, BackupKind kind, Progress* progress = nullptr);
  // Open without the changed() signal, so it may run off the window's thread
  // while nothing else touches the workspace; the caller signals afterwards
  // with Loaded(). A file whose kind the chosen route got wrong is opened by
  // its content.
  Status Load(const QString& path, BackupKind kind, Progress* progress = nullptr);
  void Loaded() { emit changed(); }

  // A click on a tree node: which panel, with what (service-book values land in
  // workspace().hrtnet); also moves the Service Book menu's state.
  ClickResult Click(NodeId node);

  // The search loop's counter: BeginSearch() at the start of mSearch, then one
  // NextMatch per pass with whatever text the user typed this time.
  void BeginSearch() { occurrence_ = 0; }
  NodeId NextMatch(const QString& text);
  int occurrence() const { return occurrence_; }

 signals:
  // The tree, caption, status texts or menu states may have changed.
  void changed();

 private:
  KindLabeller labeller_;
  Workspace ws_;
  int occurrence_ = 0;
};

}  // namespace orchidlamp
