// The window's own figures on a large backup: from Open to a shown tree whose
// largest database is expanded and scrolled to its end, and from a record's
// selection to its panel being shown. Run on the offscreen platform; peak memory
// comes from /usr/bin/time -v around the whole process.
//
//   window_open FILE

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QGroupBox>
#include <QTemporaryDir>
#include <QTreeView>
#include <cstdio>

#include "core/database_tree.h"
#include "ui/detail_panels.h"
#include "ui/main_window.h"
#include "ui/tree_model.h"

using namespace orchidlamp;

int main(int argc, char** argv) {
  qputenv("ORCHIDLAMP_NO_ASSOCIATION", "1");
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication app(argc, argv);
  if (argc != 2) {
    std::fprintf(stderr, "usage: window_open FILE\n");
    return 2;
  }
  QTemporaryDir program;
  frmMain window(program.path().toStdString());
  window.resize(1000, 700);
  window.show();
  QApplication::processEvents();

  QElapsedTimer clock;
  clock.start();
  window.OpenFile(QString::fromLocal8Bit(argv[1]), BackupKind::Ipd);
  while (window.loading()) QApplication::processEvents(QEventLoop::WaitForMoreEvents, 10);
  const DatabaseTree& tree = window.controller().workspace().tree();
  NodeId largest = kNoNode;
  tree.ForEachChild(tree.Root(), [&](NodeId db) {
    if (largest == kNoNode || tree.ChildCount(db) > tree.ChildCount(largest)) largest = db;
  });
  if (largest == kNoNode || tree.ChildCount(largest) == 0) {
    std::fprintf(stderr, "window_open: no records in %s\n", argv[1]);
    return 1;
  }
  window.tree()->expand(window.model()->IndexOf(largest));
  window.tree()->scrollToBottom();
  QApplication::processEvents();
  const double openMs = clock.nsecsElapsed() / 1e6;

  // A record from the middle of the largest database, as a user would pick it.
  const NodeId record = tree.Children(largest)[tree.Children(largest).size() / 2];
  clock.restart();
  // The detail view follows clicks, not the current index.
  const QModelIndex index = window.model()->IndexOf(record);
  window.tree()->setCurrentIndex(index);
  emit window.tree()->clicked(index);
  QApplication::processEvents();
  const double clickMs = clock.nsecsElapsed() / 1e6;
  const bool shown = window.panels()->VisibleFrame() != nullptr;

  std::printf("records %zu\nopen_to_scrollable_tree_ms %.1f\nclick_to_panel_ms %.2f (panel %s)\n",
              tree.size(), openMs, clickMs, shown ? "shown" : "none");
  return shown ? 0 : 1;
}
