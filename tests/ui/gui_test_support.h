#pragma once

// One QApplication per test program with a settings store and data folder of
// its own and no desktop registration, and prompts answered from a script.

#include <QAbstractItemModel>
#include <QApplication>
#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeView>
#include <deque>
#include <vector>

#include "core/result.h"
#include "ui/background_work.h"
#include "ui/user_prompts.h"

namespace orchidlamp::testing {

inline QApplication& GuiApp() {
  static QTemporaryDir settingsFolder;
  static QApplication* app = [] {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("ORCHIDLAMP_NO_ASSOCIATION", "1");
    QStandardPaths::setTestModeEnabled(true);
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, settingsFolder.path());
    static int argc = 1;
    static char name[] = "ui_tests";
    static char* argv[] = {name, nullptr};
    auto* a = new QApplication(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("Orchidlamp"));
    QApplication::setApplicationName(QStringLiteral("Orchidlamp"));
    return a;
  }();
  return *app;
}

// Long work runs on a window's or dialog's background worker: wait for it as a
// user would, with the event loop running.
template <class Owner>
void WaitForWork(Owner& owner) {
  for (int i = 0; i < 20000 && owner.work().busy(); ++i) QTest::qWait(1);
  QCoreApplication::processEvents();
}

// A click on a node of a tree view (the view follows clicks, not selections).
inline void ClickNode(QTreeView* tree, const QModelIndex& index) {
  tree->setCurrentIndex(index);
  emit tree->clicked(index);
}

// Clears the stored settings so every test starts from the defaults.
inline void ResetStoredSettings() {
  GuiApp();
  QSettings(QStringLiteral("Orchidlamp"), QStringLiteral("Orchidlamp")).clear();
}

// The record node showing `text` under the database node `db` (invalid: none).
inline QModelIndex RecordIndex(const QAbstractItemModel& m, const QString& db, const QString& text) {
  const QModelIndex root = m.index(0, 0);
  for (int d = 0; d < m.rowCount(root); ++d) {
    const QModelIndex dbIndex = m.index(d, 0, root);
    for (int r = 0; dbIndex.data().toString() == db && r < m.rowCount(dbIndex); ++r)
      if (m.index(r, 0, dbIndex).data().toString() == text) return m.index(r, 0, dbIndex);
  }
  return {};
}

// Answers in the order queued; an exhausted queue cancels (or says No).
class ScriptedPrompts final : public UserPrompts {
 public:
  std::deque<std::optional<ChosenFile>> files, saves;
  std::deque<std::optional<QString>> texts;
  std::deque<bool> answers;
  std::vector<QString> filters, saveFilters, questions, shown;
  std::vector<Message> told;

  std::optional<ChosenFile> ChooseFileToOpen(QWidget*, const QString& filter) override {
    filters.push_back(filter);
    return Pop(files, {});
  }
  std::optional<ChosenFile> ChooseFileToSave(QWidget*, const QString& filter) override {
    saveFilters.push_back(filter);
    return Pop(saves, {});
  }
  std::optional<QString> AskText(QWidget*, const QString&, const QString&) override { return Pop(texts, {}); }
  bool AskYesNo(QWidget*, const QString& title, const QString& question) override {
    questions.push_back(title + QStringLiteral("|") + question);
    return Pop(answers, false);
  }
  void Tell(QWidget*, const Message& message) override { told.push_back(message); }
  void ShowFile(const QString& path) override { shown.push_back(path); }
  std::deque<std::optional<QString>> folders;
  std::optional<QString> ChooseFolder(QWidget*, const QString&) override { return Pop(folders, {}); }

 private:
  template <class T>
  static T Pop(std::deque<T>& queue, T exhausted) {
    if (!queue.empty()) exhausted = queue.front(), queue.pop_front();
    return exhausted;
  }
};

}  // namespace orchidlamp::testing
