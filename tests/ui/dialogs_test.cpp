// The dialogs driven as a user would, the file dialogs answered by
// ScriptedPrompts: one wiring check each, the click reaches the core and what it
// writes loads back. What split, merge and the editor write is tests/editing's.

#include <gtest/gtest.h>

#include <QAction>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <functional>

#include "convert/open_backup.h"
#include "gui_test_support.h"
#include "platform/settings_store.h"
#include "records/record_kinds.h"
#include "support/cli_runner.h"
#include "support/temp_folder.h"
#include "ui/main_window.h"
#include "ui/merge_dialog.h"
#include "ui/options_dialog.h"
#include "ui/selection_tree_view.h"
#include "ui/service_book_dialog.h"
#include "ui/split_dialog.h"
#include "ui/tree_model.h"

namespace orchidlamp {
namespace {

using namespace orchidlamp::testing;

// The status line of a written backup, as the window would show it.
std::string StatusOf(const std::string& path, BackupKind kind = BackupKind::Ipd) {
  KindLabeller labeller;
  Workspace ws(labeller);
  const Status loaded = OpenBackup(ws, path, kind, StoredSettings{});
  return loaded ? ws.status().details : loaded.failure().message.text;
}

class DialogsTest : public ::testing::Test {
 protected:
  DialogsTest() {
    window.OpenGivenPath(QString::fromStdString(sample));
    WaitForWork(window);
  }
  // Runs `inside` once the modal dialog D that `menuItem` opens is up, then
  // closes it. Building the dialog runs events already, so it is polled for.
  template <class D>
  void WithModal(const char* menuItem, const std::function<void(D&)>& inside) {
    bool ran = false;
    QTimer poll;
    poll.setInterval(0);
    QObject::connect(&poll, &QTimer::timeout, &window, [&] {
      D* dialog = window.findChild<D*>();
      if (!dialog || !dialog->isVisible() || ran) return;
      poll.stop();
      ran = true;
      WaitForWork(*dialog);  // the selection tree's copy
      inside(*dialog);
      WaitForWork(*dialog);
      dialog->close();
    });
    poll.start();
    window.findChild<QAction*>(QString::fromLatin1(menuItem))->trigger();
    EXPECT_TRUE(ran);
    EXPECT_EQ(window.findChild<D*>(), nullptr);  // the dialog lives as long as its command
  }
  static void ClickImage(SelectionTreeView& view, NodeId node) {
    const QModelIndex index = view.treeModel()->IndexOf(node);
    view.scrollTo(index);
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, view.ImageRect(index).center());
  }
  std::string SavedPath(std::size_t message) const {
    const std::string& text = prompts.told.at(message).text;
    return text.starts_with("File saved as ") ? text.substr(14) : "not saved: " + text;
  }

  const bool fresh = (ResetStoredSettings(), true);  // before the window: the application, clean settings
  TempFolder folder, programFolder;
  const std::string sample = folder.Write("s.ipd", ReadFile(SamplePath()));
  ScriptedPrompts prompts;
  frmMain window{programFolder.path(), &prompts};
};

TEST_F(DialogsTest, SplitTicksByPictureAndSpaceAndWritesTheTicked) {
  const std::string out = folder.File("split.ipd");
  WithModal<frmSplit>("mSplit", [&](frmSplit& dialog) {
    SelectionTreeView& view = *dialog.tvwTree();
    DatabaseTree& tree = dialog.selection();
    const NodeId tasks = tree.FindByKeyOrTag("12DBTop"), memos = tree.FindByKeyOrTag("7DBTop");
    ClickImage(view, tree.FirstChild(tasks));
    EXPECT_EQ(tree.Image(tasks), ImageKey::TickSome);
    // Space ticks the selected node with its records; other keys are swallowed.
    view.setCurrentIndex(view.treeModel()->IndexOf(memos));
    QTest::keyClick(&view, 'S');
    QTest::keyClick(&view, Qt::Key_Space);
    EXPECT_EQ(view.currentIndex(), view.treeModel()->IndexOf(memos));
    EXPECT_EQ(tree.Image(tree.FirstChild(memos)), ImageKey::TickAll);
    prompts.saves.push_back(ChosenFile{QString::fromStdString(out), 1});
    dialog.findChild<QPushButton*>(QStringLiteral("btnSplit"))->click();
  });
  EXPECT_EQ(prompts.told.at(0).title, "Split is complete");
  EXPECT_EQ(SavedPath(0), out);
  // The Memos, first in the written file, stand at database 0 and are not counted as memos.
  EXPECT_EQ(StatusOf(out),
            "0 SMS Messages, 0 Address Book (All), 1 Tasks, 0 Memos, 0 Calendar, 0 Phone Calls, 0 Service Book");
}

TEST_F(DialogsTest, MergeBrowsesASecondFileAndJoinsTheTickedDatabases) {
  const std::string out = folder.File("merged.ipd");
  WithModal<frmMerge>("mMerge", [&](frmMerge& dialog) {
    prompts.files.push_back(ChosenFile{QString::fromStdString(sample), 1});
    dialog.findChild<QPushButton*>(QStringLiteral("smBrowse"))->click();
    WaitForWork(dialog);
    EXPECT_EQ(dialog.smIPD()->text(), QString::fromStdString(sample));
    ASSERT_NE(dialog.second(), nullptr);
    ClickImage(*dialog.tvwfTree(), dialog.firstSelection().FindByKeyOrTag("12DBTop"));
    ClickImage(*dialog.tvwfTree(), dialog.firstSelection().FindByKeyOrTag("7DBTop"));  // written first, at database 0
    ClickImage(*dialog.tvwsTree(), dialog.second()->tree.FindByKeyOrTag("12DBTop"));
    prompts.saves.push_back(ChosenFile{QString::fromStdString(out), 1});
    dialog.findChild<QPushButton*>(QStringLiteral("btnMerge"))->click();
  });
  EXPECT_EQ(prompts.told.at(0).title, " merging completed successfully");
  EXPECT_EQ(SavedPath(0), out);
  EXPECT_EQ(StatusOf(out),
            "0 SMS Messages, 0 Address Book (All), 6 Tasks, 0 Memos, 0 Calendar, 0 Phone Calls, 0 Service Book");
}

TEST_F(DialogsTest, ServiceBookEditorOpensModelessOnTheSelectedRecordAndSaves) {
  window.findChild<QAction*>(QStringLiteral("mEdit"))->trigger();
  EXPECT_EQ(prompts.told.at(0).text, "No Service Book record is selected!\r\nPlease select one for edit");
  ClickNode(window.tree(), RecordIndex(*window.model(), "Service Book", "Browser Config"));
  window.findChild<QAction*>(QStringLiteral("mEdit"))->trigger();
  EditSBForm* editor = window.editor();
  ASSERT_TRUE(editor && editor->isVisible());
  EXPECT_FALSE(editor->isModal());
  EXPECT_EQ(editor->Box(17)->text(), QStringLiteral("Browser Config"));
  editor->Box(17)->setText(QStringLiteral("Edited Config"));
  editor->findChild<QPushButton*>(QStringLiteral("Save"))->click();
  const std::string saved = SavedPath(1);
  EXPECT_TRUE(saved.starts_with(folder.path() + "/OL_Export_")) << saved;
  const Bytes bytes = ReadFile(saved);
  EXPECT_NE(std::string(bytes.begin(), bytes.end()).find("Edited Config"), std::string::npos);
  editor->findChild<QPushButton*>(QStringLiteral("Command1"))->click();
  EXPECT_FALSE(editor->isVisible());
}

TEST_F(DialogsTest, SaveAsWritesTheChosenKind) {
  const std::string target = folder.File("mac.bbb");
  prompts.saves.push_back(ChosenFile{QString::fromStdString(target), 2});
  window.findChild<QAction*>(QStringLiteral("mSaveas"))->trigger();
  WaitForWork(window);
  EXPECT_EQ(prompts.saveFilters.at(0),
            QStringLiteral("BBB (Windows) Files (*.bbb);;BBB (Mac) Files (*.bbb);;IPD Files (*.ipd)"));
  EXPECT_EQ(prompts.told.at(0).text, "File saved successfully in " + target);
  EXPECT_EQ(StatusOf(target, BackupKind::Bbb), StatusOf(sample));
}

TEST_F(DialogsTest, OptionsStoreOnOkOnlyAndShowWhatIsStored) {
  WriteStoredSettings(StoredSettings{"+12", "|"});  // outside the lists: shown and kept
  frmOptions dialog(prompts);
  EXPECT_EQ(dialog.tzd()->currentText(), QStringLiteral("+12"));
  dialog.exd()->setCurrentText(QStringLiteral("TAB"));
  dialog.findChild<QPushButton*>(QStringLiteral("cmdCancel"))->click();
  EXPECT_EQ(ReadStoredSettings().exportDelimiter, "|");

  frmOptions again(prompts);
  again.tzd()->setCurrentText(QStringLiteral("-3"));
  again.findChild<QPushButton*>(QStringLiteral("cmdOK"))->click();
  EXPECT_EQ(ReadStoredSettings().timeZone, "-3");
  EXPECT_EQ(prompts.told.at(0),
            (Message{"Settings saved, you need to reopen your file.", "Settings", MessageIcon::Information}));
}

}  // namespace
}  // namespace orchidlamp
