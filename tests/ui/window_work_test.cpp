// The window's long work and desktop habits: loads and writes on the worker
// with Cancel, the detail view following clicks and keys, recent files, the
// save dialogs' extension.

#include <gtest/gtest.h>

#include <QAction>
#include <QGroupBox>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>
#include <filesystem>
#include <sstream>

#include "convert/desktop_backup_writer.h"
#include "generators/large_backup.h"
#include "gui_test_support.h"
#include "records/record_kinds.h"
#include "support/cli_runner.h"
#include "support/temp_folder.h"
#include "ui/background_work.h"
#include "ui/detail_panels.h"
#include "ui/export_frame.h"
#include "ui/main_window.h"
#include "ui/media_frame.h"
#include "ui/tree_model.h"
#include "ui/user_prompts.h"
#include "ui/window_memory.h"

namespace orchidlamp {
namespace {

using namespace orchidlamp::testing;

class WindowWorkTest : public ::testing::Test {
 protected:
  QString Open(const std::string& name, const Bytes& bytes) {
    const QString path = QString::fromStdString(folder.Write(name, bytes));
    window.OpenGivenPath(path);
    WaitForWork(window);
    return path;
  }
  std::string Large(std::size_t records) {
    std::ostringstream out;
    WriteLargeBackup(out, records, 1);
    const std::string text = out.str();
    return folder.Write("large.ipd", Bytes(text.begin(), text.end()));
  }
  QStringList VisibleFrames() const {
    QStringList visible;
    for (QGroupBox* frame : window.panels()->findChildren<QGroupBox*>(QString(), Qt::FindDirectChildrenOnly))
      if (!frame->isHidden()) visible << frame->objectName();
    return visible;
  }
  QModelIndex Record(const char* db, const char* text) const {
    return RecordIndex(*window.model(), QString::fromLatin1(db), QString::fromLatin1(text));
  }

  struct FreshApp {
    FreshApp() { ResetStoredSettings(); }
  } app;
  TempFolder folder, programFolder;
  ScriptedPrompts prompts;
  mutable frmMain window{programFolder.path(), &prompts};
};

TEST_F(WindowWorkTest, ALoadRunsOnTheWorkerWithFileCommandsOffAndIsARecentFileOnceDone) {
  const QString path = QString::fromStdString(folder.Write("f.ipd", ReadFile(SamplePath())));
  window.OpenGivenPath(path);
  EXPECT_TRUE(window.busy());
  EXPECT_FALSE(window.findChild<QAction*>(QStringLiteral("mOpen"))->isEnabled());
  WaitForWork(window);
  EXPECT_FALSE(window.busy());
  EXPECT_TRUE(window.findChild<QAction*>(QStringLiteral("mOpen"))->isEnabled());
  EXPECT_TRUE(window.findChild<QMenu*>(QStringLiteral("mManipulate"))->menuAction()->isEnabled());
  EXPECT_EQ(window.recentFiles(), QStringList{path});
  EXPECT_TRUE(prompts.told.empty());
  // A recent file that has gone is taken off the list with a message.
  std::filesystem::remove(path.toStdString());
  window.OpenRecent(path);
  ASSERT_EQ(prompts.told.size(), 1u);
  EXPECT_NE(prompts.told[0].text.find("no longer exists"), std::string::npos);
  EXPECT_TRUE(window.recentFiles().isEmpty() && StoredRecentFiles().isEmpty());
}

TEST_F(WindowWorkTest, TheDetailViewFollowsClicksAndKeysNotSelectionsQtMakes) {
  Open("f.ipd", ReadFile(SamplePath()));
  const QModelIndex sms = Record("SMS Messages", "+14165550134");
  window.tree()->setCurrentIndex(sms);  // as focus returning to the tree does
  EXPECT_TRUE(VisibleFrames().isEmpty());
  ClickNode(window.tree(), sms);
  EXPECT_EQ(VisibleFrames(), QStringList{"SMSmessages"});
  window.panels()->HideAll();
  ClickNode(window.tree(), sms);  // the node already selected
  EXPECT_EQ(VisibleFrames(), QStringList{"SMSmessages"});
  window.tree()->expand(sms.parent());
  window.tree()->setFocus();
  QTest::keyClick(window.tree(), Qt::Key_Down);
  EXPECT_EQ(window.tree()->currentIndex(), sms.siblingAtRow(1));
  EXPECT_EQ(VisibleFrames(), QStringList{"SMSmessages"});
}

TEST_F(WindowWorkTest, ACancelledExportStopsQuietlyAndRemovesItsFile) {
  window.OpenGivenPath(QString::fromStdString(Large(200000)));
  WaitForWork(window);
  window.exportFrame()->state().visible = true;  // the whole tree needs no record selected
  window.exportFrame()->state().Check(kScopeTree);
  window.findChild<QPushButton*>(QStringLiteral("Bexport"))->click();
  window.findChild<QPushButton*>(QStringLiteral("CancelWork"))->click();
  WaitForWork(window);
  EXPECT_TRUE(prompts.told.empty());
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 1);  // the backup alone
}

TEST_F(WindowWorkTest, ClosingDuringALoadAsksNothingAndCloses) {
  window.show();
  window.OpenGivenPath(QString::fromStdString(Large(200000)));
  EXPECT_TRUE(window.close());
  EXPECT_FALSE(window.busy());
  EXPECT_TRUE(prompts.told.empty());
}

TEST_F(WindowWorkTest, ADesktopBackupChosenUnderTheIpdFilterOpensByItsContent) {
  KindLabeller labeller;
  Workspace ws(labeller);
  ASSERT_TRUE(ws.Load(folder.Write("f.ipd", ReadFile(SamplePath())), {}));
  ASSERT_TRUE(SaveAs(ws, folder.File("f.bbb"), static_cast<int>(SaveKind::WindowsBbb)));
  prompts.files.push_back(ChosenFile{QString::fromStdString(folder.File("f.bbb")), 1});
  window.mOpen_Click();
  WaitForWork(window);
  EXPECT_TRUE(prompts.told.empty());
  EXPECT_TRUE(Record("SMS Messages", "+971505550142").isValid());
}

TEST_F(WindowWorkTest, ExportPicksTheFirstScopeThatAppliesAndAnotherOpenHidesThePanel) {
  const QString path = Open("s.ipd", ReadFile(SamplePath()));
  ClickNode(window.tree(), Record("SMS Messages", "+971505550142"));
  window.findChild<QAction*>(QStringLiteral("mExport"))->trigger();
  EXPECT_TRUE(window.findChild<QRadioButton*>(QStringLiteral("ExOP0"))->isChecked());
  EXPECT_FALSE(window.exportFrame()->isHidden());
  window.OpenGivenPath(path);
  WaitForWork(window);
  EXPECT_TRUE(window.exportFrame()->isHidden());
}

TEST_F(WindowWorkTest, ExportForAnotherPhoneWritesIntoTheChosenFolderAndListsTheFiles) {
  EXPECT_FALSE(window.findChild<QAction*>(QStringLiteral("mMigrate"))->isEnabled());
  EXPECT_FALSE(window.findChild<QAction*>(QStringLiteral("mExit"))->icon().isNull());
  Open("s.ipd", ReadFile(SamplePath()));
  prompts.folders.push_back(QString::fromStdString(folder.File("phone")));
  window.findChild<QAction*>(QStringLiteral("mMigrate"))->trigger();
  WaitForWork(window);
  ASSERT_EQ(prompts.told.size(), 1u);
  EXPECT_TRUE(prompts.told[0].text.starts_with("Written to " + folder.File("phone") + ":\ncontacts.vcf\t"))
      << prompts.told[0].text;
  EXPECT_TRUE(FileExists(folder.File("phone/calendar.ics")));
}

TEST(WindowMemory, RecentFilesKeepTheLastEightNewestFirstWithoutRepeats) {
  QStringList recent;
  for (int i = 0; i < 10; ++i) recent = WithRecentFile(recent, QString::number(i));
  recent = WithRecentFile(recent, QStringLiteral("5"));
  EXPECT_EQ(recent, (QStringList{"5", "9", "8", "7", "6", "4", "3", "2"}));
}

TEST(SaveDialog, AddsTheChosenFiltersExtensionOnlyToANameWithout) {
  const struct { const char* path; const char* filter; const char* expected; } rows[] = {
      {"/t/out", "IPD Files (*.ipd)", "/t/out.ipd"},
      {"/t/out", "BBB (Mac) Files (*.bbb)", "/t/out.bbb"},
      {"/t/out.IPD", "IPD Files (*.ipd)", "/t/out.IPD"},
      {"/t/out.txt", "IPD Files (*.ipd)", "/t/out.txt"},
      {"/t/out", "All files", "/t/out"},
  };
  for (const auto& row : rows)
    EXPECT_EQ(WithFilterExtension(QString::fromLatin1(row.path), QString::fromLatin1(row.filter)),
              QString::fromLatin1(row.expected));
}

}  // namespace
}  // namespace orchidlamp
