#pragma once

// What every window test needs: one QApplication for the test program, a
// settings store and data folder of its own, no desktop registration, and a
// UserPrompts that answers from a script instead of a person.

#include <QAbstractItemModel>
#include <QApplication>
#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeView>
#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "core/message.h"
#include "support/ipd_builder.h"
#include "ui/settings_store.h"
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

// The record node holding `text` among the children of the database node `db`
// (an invalid index when there is none).
inline QModelIndex RecordIndex(const QAbstractItemModel& m, const QString& db, const QString& text) {
  const QModelIndex root = m.index(0, 0);
  for (int d = 0; d < m.rowCount(root); ++d) {
    const QModelIndex dbIndex = m.index(d, 0, root);
    if (dbIndex.data().toString() != db) continue;
    for (int r = 0; r < m.rowCount(dbIndex); ++r)
      if (m.index(r, 0, dbIndex).data().toString() == text) return m.index(r, 0, dbIndex);
  }
  return {};
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

class ScriptedPrompts final : public UserPrompts {
 public:
  std::deque<std::optional<ChosenFile>> files;
  std::deque<std::optional<QString>> texts;
  std::deque<bool> answers;
  std::vector<Message> told;
  std::vector<QString> questions;
  std::vector<std::pair<QString, QString>> asked;  // title, prompt

  std::optional<ChosenFile> ChooseFileToOpen(QWidget*, const QString& filter) override {
    filters.push_back(filter);
    std::optional<ChosenFile> f;
    if (!files.empty()) {
      f.swap(files.front());
      files.pop_front();
    }
    return f;
  }
  // Answers of the save dialogs, in order; an exhausted list cancels.
  std::deque<std::optional<ChosenFile>> saves;
  std::vector<QString> saveFilters;
  std::vector<QString> shown;

  std::optional<ChosenFile> ChooseFileToSave(QWidget*, const QString& filter) override {
    saveFilters.push_back(filter);
    std::optional<ChosenFile> f;
    if (!saves.empty()) {
      f.swap(saves.front());
      saves.pop_front();
    }
    return f;
  }
  void ShowFile(const QString& path) override { shown.push_back(path); }

  std::optional<QString> AskText(QWidget*, const QString& title, const QString& prompt) override {
    asked.emplace_back(title, prompt);
    std::optional<QString> t;
    if (!texts.empty()) {
      t.swap(texts.front());
      texts.pop_front();
    }
    return t;
  }
  bool AskYesNo(QWidget*, const QString& title, const QString& question) override {
    questions.push_back(title + QStringLiteral("|") + question);
    if (answers.empty()) return false;
    const bool a = answers.front();
    answers.pop_front();
    return a;
  }
  void Tell(QWidget*, const Message& message) override { told.push_back(message); }

  std::vector<QString> filters;
};

// A backup with a record of most kinds, laid out so each test can name what it
// expects: database 0 is of no known kind (so slot 0's carry-over does not
// colour the results), "Options" gets no node.
struct FixtureBackup {
  IpdBuilder builder;
  Bytes bytes;
};

inline FixtureBackup MakeFixture() {
  FixtureBackup f;
  IpdBuilder& b = f.builder;
  b.Database("Handheld Agent")    // 0
      .Database("SMS Messages")   // 1
      .Database("Address Book")   // 2
      .Database("Memos")          // 3
      .Database("Tasks")          // 4
      .Database("Phone Call Logs")  // 5
      .Database("Service Book")   // 6
      .Database("Calendar")       // 7
      .Database("Options")        // 8
      .Database("Later Device Data");  // 9
  b.Add(SmsRecord(1, true, 0, 0, {{2, Text("+15551234")}, {4, Text("Hello there")}}));                // 0
  b.Add(FieldRecord(2, {{32, Text("Ann")}, {32, Text("Lee")}, {33, Text("Acme")}, {1, Text("ann@x.org")}}));  // 1
  b.Add(FieldRecord(3, {{1, Text("Shopping")}, {2, Text("Milk\r\nEggs")}}));                          // 2
  b.Add(FieldRecord(4, {{2, Text("Call Bob")}}));                                                        // 3
  b.Add(FieldRecord(5, {{2, LE32(1)}, {12, Text("5550001")}, {31, Text("Bob")}}));                       // 4
  b.Add(FieldRecord(6, {{3, Text("Browser Config")}, {7, Text("S1")}, {8, Text("BrowserConfig")},
                        {6, LE32(0xFFFFFFFF)}}));                                                        // 5
  b.Add(FieldRecord(7, {{2, Text("Meeting")}, {3, Text("Room 4")}}));                                    // 6
  b.Add(SmsRecord(1, false, 0, 0, {{2, Text("+15559999")}, {4, Text("Reply")}}));                        // 7
  b.Add(FieldRecord(9, {{1, Text("unknown")}}));                                                         // 8
  b.Add(FieldRecord(3, {{1, Text("sms list")}, {2, Text("to send")}}));                                  // 9
  f.bytes = b.Build();
  return f;
}

}  // namespace orchidlamp::testing
