// The main window on the bundled sample, one wiring check per menu item and
// frame: the click reaches the core, the result reaches the screen.

#include "ui/main_window.h"

#include <gtest/gtest.h>

#include <QAction>
#include <array>
#include <QDropEvent>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMimeData>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <QTreeView>
#include <QUrl>

#include "gui_test_support.h"
#include "platform/settings_store.h"
#include "support/cli_runner.h"
#include "support/temp_folder.h"
#include "ui/detail_panels.h"
#include "ui/media_frame.h"
#include "ui/tree_model.h"

namespace orchidlamp {
namespace {

using namespace orchidlamp::testing;

class MainWindowTest : public ::testing::Test {
 protected:
  QAction* Item(const char* name) const { return window.findChild<QAction*>(QString::fromLatin1(name)); }
  bool MenuEnabled(const char* menu) const {
    return window.findChild<QMenu*>(QString::fromLatin1(menu))->menuAction()->isEnabled();
  }
  QString Panel(const char* name) const { return window.findChild<QLabel*>(QString::fromLatin1(name))->text(); }
  QString Box(const char* name) const { return BoxText(window.findChild<QWidget*>(QString::fromLatin1(name))); }
  // A copy under a plain name (the root's text, its path, is a search candidate
  // too), and the frames shown after selecting the record `text` of database `db`.
  void OpenSample() {
    window.OpenGivenPath(QString::fromStdString(folder.Write("s.ipd", ReadFile(SamplePath()))));
    WaitForWork(window);
  }
  std::vector<QString> Select(const QString& db, const QString& text) const {
    const QModelIndex index = RecordIndex(*window.model(), db, text);
    EXPECT_TRUE(index.isValid()) << text.toStdString();
    ClickNode(window.tree(), index);
    std::vector<QString> visible;
    for (QGroupBox* frame : window.panels()->findChildren<QGroupBox*>(QString(), Qt::FindDirectChildrenOnly))
      if (!frame->isHidden()) visible.push_back(frame->objectName());
    return visible;
  }

  const bool fresh = (ResetStoredSettings(), true);  // before the window: the application, clean settings
  TempFolder folder, programFolder;
  ScriptedPrompts prompts;
  mutable frmMain window{programFolder.path(), &prompts};
};

TEST_F(MainWindowTest, StartsEmptyWithItsMenusNamedAndTheFileCommandsOff) {
  EXPECT_EQ(window.windowTitle(), QStringLiteral("Orchidlamp IPD Reader"));
  EXPECT_EQ(Panel("main"), QStringLiteral("Please open IPD file from File menu"));
  EXPECT_TRUE(FileExists(programFolder.File("media")));
  for (const auto& [name, caption] : std::vector<std::pair<const char*, const char*>>{
           {"mOpen", "&Open..."}, {"mSaveas", "&Save As/Convert To..."}, {"mEdit", "&Edit..."},
           {"mExport", "Ex&port..."}, {"mMerge", "&Merge..."}, {"mSplit", "Sp&lit..."}, {"mSearch", "&Search..."},
           {"epng", "PNG Images..."}, {"ejpg", "JPG Images..."}, {"mSettings", "&Settings..."},
           {"mMainhelp", "Orchidlamp H&elp"}, {"mAbout", "&About Orchidlamp"}, {"mExit", "E&xit"}})
    EXPECT_EQ(Item(name)->text(), QString::fromLatin1(caption)) << name;
  EXPECT_TRUE(!Item("mExport")->icon().isNull() && Item("mAbout")->icon().isNull());  // pictures by position
  EXPECT_FALSE(Item("mSaveas")->isEnabled());
  EXPECT_FALSE(MenuEnabled("mServicebook"));
  EXPECT_FALSE(MenuEnabled("mManipulate"));
}

TEST_F(MainWindowTest, OpeningFillsTreeCaptionStatusAndMenus) {
  // The whole command line is the path; the extension is compared case-sensitively.
  window.OpenCommandLine({"orchidlamp", QString::fromStdString(folder.Write("s.IPD", ReadFile(SamplePath())))});
  WaitForWork(window);
  EXPECT_EQ(window.windowTitle(), QStringLiteral("Orchidlamp IPD Reader"));
  const QString spaced = QString::fromStdString(folder.Write("my phone.ipd", ReadFile(SamplePath())));
  window.OpenCommandLine({"orchidlamp", spaced.section(QLatin1Char(' '), 0, 0), spaced.section(QLatin1Char(' '), 1)});
  WaitForWork(window);
  EXPECT_EQ(window.windowTitle(), QStringLiteral("Orchidlamp IPD Reader - ") + spaced);
  EXPECT_EQ(Panel("main"), QStringLiteral("my phone.ipd"));
  EXPECT_TRUE(Panel("details").startsWith(QStringLiteral("4 SMS Messages, 3 Address Book (All)")));
  EXPECT_TRUE(Item("mSaveas")->isEnabled());
  EXPECT_TRUE(MenuEnabled("mManipulate"));
  EXPECT_TRUE(MenuEnabled("mServicebook"));

  // File > Open: a cancelled dialog keeps the file; a failed load says why.
  window.mOpen_Click();
  EXPECT_EQ(prompts.filters, std::vector<QString>{QStringLiteral("IPD Files (*.ipd);;BBB Files (*.bbb)")});
  EXPECT_EQ(Panel("main"), QStringLiteral("my phone.ipd"));
  prompts.files.push_back(ChosenFile{QString::fromStdString(folder.Write("bad.ipd", Bytes(9, 0x41))), 1});
  window.mOpen_Click();
  WaitForWork(window);
  ASSERT_EQ(prompts.told.size(), 1u);
  EXPECT_EQ(prompts.told[0].text, "Error Parsing the file, couldn't read the DB titles");
  EXPECT_FALSE(MenuEnabled("mManipulate"));
}

TEST_F(MainWindowTest, EveryKindShowsItsFrameWithItsValues) {
  WriteStoredSettings(StoredSettings{"+3", ","});  // read at the open
  OpenSample();
  for (const auto& [db, record, frame, box, value] : std::vector<std::array<const char*, 5>>{
           {"SMS Messages", "+971505550142", "SMSmessages", "tel_number", "+971505550142"},
           {"Address Book", "Ann Lee", "Contacts", "FirstName", "Ann"},
           {"Calendar - All", "Project review", "Calendar", "ct35", "Room 4B"},
           {"Tasks", "Call the bank", "Task", "ct40", "Call the bank"},
           {"Memos", "Shopping list", "Memo", "ct44", "Shopping list"},
           {"Phone Call Logs", "+16135550000", "pcallslog", "ct50", "Missed Call"},
           {"AutoText", "teh", "AutoTextm", "atr1", "the"},
           {"Browser Bookmarks", "Weather", "BBookmarks", "bbkN1", "Weather"},
           {"Service Book", "Desktop [CMIME]", "Servicebook", "hrtnet17", "Desktop [CMIME]"}}) {
    EXPECT_EQ(Select(QString::fromUtf8(db), QString::fromUtf8(record)), std::vector<QString>{frame}) << record;
    EXPECT_EQ(Box(box), QString::fromUtf8(value)) << record;
  }
  EXPECT_EQ(window.controller().workspace().settings().timeZoneHours, 3.0);
  EXPECT_TRUE(MenuEnabled("mServicebook"));
  // What the user types into a service-book box is what the editor starts from.
  auto* name = window.findChild<QLineEdit*>(QStringLiteral("hrtnet17"));
  name->selectAll();
  QTest::keyClicks(name, "Edited");
  EXPECT_EQ(window.controller().workspace().hrtnet[17], "Edited");

  // A contact's photo is saved into the program folder and shown.
  Select(QStringLiteral("Address Book"), QStringLiteral("Omar"));
  EXPECT_TRUE(FileExists(Box("PhotoFile").toStdString()));
  EXPECT_FALSE(window.findChild<QLabel*>(QStringLiteral("ContactPhoto"))->pixmap().isNull());
}

// Three nodes hold "ser": the Browser Bookmarks and Service Book databases, then
// the record "Browser Config". Each Yes moves one further; a fourth pass ends silently.
TEST_F(MainWindowTest, SearchSelectsOneMatchAfterAnother) {
  OpenSample();
  prompts.texts = {QStringLiteral("ser"), QStringLiteral("ser"), QStringLiteral("ser"), QStringLiteral("ser")};
  prompts.answers = {true, true, true};
  window.mSearch_Click();
  EXPECT_EQ(prompts.questions, (std::vector<QString>{"Find|Found Browser Bookmarks\r\nFind next matching item? ",
                                                     "Find|Found Service Book\r\nFind next matching item? ",
                                                     "Find|Found Browser Config\r\nFind next matching item? "}));
  EXPECT_EQ(window.tree()->currentIndex(), RecordIndex(*window.model(), "Service Book", "Browser Config"));
}

TEST_F(MainWindowTest, HelpAboutAndDrop) {
  window.mMainhelp_Click();
  EXPECT_EQ(prompts.told.at(0), (Message{"Please check Orchidlamp folder for the help PDF file", "", MessageIcon::None}));

  window.mAbout_Click();
  auto* splash = window.findChild<QWidget*>(QStringLiteral("frmSplash"));
  ASSERT_TRUE(splash && splash->isVisible());
  EXPECT_EQ(splash->findChild<QLabel*>(QStringLiteral("lblVersion"))->text(), QStringLiteral("Version 3.5"));
  QTest::mouseClick(splash->findChild<QWidget*>(QStringLiteral("Image1")), Qt::LeftButton);
  EXPECT_FALSE(splash->isVisible());

  // A dropped backup, named in any letter case, opens once the drop has returned.
  QMimeData data;
  data.setUrls({QUrl::fromLocalFile(QString::fromStdString(folder.Write("dropped.IPD", ReadFile(SamplePath()))))});
  QDragEnterEvent enter(QPoint(10, 10), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QCoreApplication::sendEvent(&window, &enter);  // the drop goes to the widget the drag entered
  QDropEvent drop(QPointF(10, 10), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QCoreApplication::sendEvent(&window, &drop);
  QCoreApplication::processEvents();
  WaitForWork(window);
  EXPECT_EQ(Panel("main"), QStringLiteral("dropped.IPD"));
}

TEST_F(MainWindowTest, ExportPanelAndMediaFrameWriteWhatTheyShow) {
  OpenSample();
  auto* panel = window.findChild<QGroupBox*>(QStringLiteral("ExportToText"));
  window.mExport_Click();  // nothing selected: only a record may be exported
  EXPECT_EQ(prompts.told.at(0).title, "Please select record first:");
  EXPECT_TRUE(panel->isHidden());

  Select(QStringLiteral("Memos"), QStringLiteral("Shopping list"));
  window.mExport_Click();
  EXPECT_FALSE(panel->isHidden());
  auto* kind = window.findChild<QRadioButton*>(QStringLiteral("ExOP1"));
  EXPECT_EQ(kind->text(), QStringLiteral("Export All Memos"));
  kind->click();
  window.findChild<QPushButton*>(QStringLiteral("Cexport"))->click();
  WaitForWork(window);
  EXPECT_TRUE(prompts.told.at(1).text.starts_with("Export to: " + folder.path() + "/OL_Export_")) << prompts.told[1].text;

  window.epng_Click();
  WaitForWork(window);
  auto* list = window.findChild<QListWidget*>(QStringLiteral("ResultList"));
  EXPECT_FALSE(window.mediaFrame()->isHidden());
  ASSERT_EQ(list->count(), 1);
  EXPECT_TRUE(FileExists(list->item(0)->text().toStdString()));
  EXPECT_EQ(prompts.told.back().text, "Successfully saved 1 PNG images in the media folder.");
  emit list->itemDoubleClicked(list->item(0));
  EXPECT_EQ(prompts.shown, std::vector<QString>{list->item(0)->text()});
}

}  // namespace
}  // namespace orchidlamp
