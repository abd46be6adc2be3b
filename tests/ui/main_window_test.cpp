#include "ui/main_window.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QDropEvent>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QProgressBar>
#include <QTabWidget>
#include <QTest>
#include <QTreeView>
#include <QUrl>

#include "gui_test_support.h"
#include "support/temp_folder.h"
#include "generators/tiny_images.h"
#include "ui/detail_panels.h"
#include "ui/export_frame.h"
#include "ui/media_frame.h"
#include "ui/tree_model.h"

namespace orchidlamp {
namespace {

using namespace orchidlamp::testing;

class MainWindowTest : public ::testing::Test {
 protected:
  QAction* Item(const char* name) const { return window.findChild<QAction*>(QString::fromLatin1(name)); }
  QMenu* Menu(const char* name) const { return window.findChild<QMenu*>(QString::fromLatin1(name)); }
  QString PanelText(const char* name) const {
    auto* label = window.findChild<QLabel*>(QString::fromLatin1(name));
    return label && !label->isHidden() ? label->text() : QString();
  }
  bool MenuEnabled(const char* name) const { return Menu(name)->menuAction()->isEnabled(); }
  QString Box(const char* name) const {
    auto* box = window.findChild<QWidget*>(QString::fromLatin1(name));
    return box ? BoxText(box) : QStringLiteral("<missing>");
  }
  std::vector<QString> VisibleFrames() const {
    std::vector<QString> visible;
    for (QGroupBox* frame : window.panels()->findChildren<QGroupBox*>(QString(), Qt::FindDirectChildrenOnly))
      if (!frame->isHidden()) visible.push_back(frame->objectName());
    return visible;
  }
  QString OpenFixture(const std::string& name = "f.ipd") {
    const std::string path = folder.Write(name, MakeFixture().bytes);
    window.OpenGivenPath(QString::fromStdString(path));
    return QString::fromStdString(path);
  }
  QModelIndex Record(const QString& db, const QString& text) const { return RecordIndex(*window.model(), db, text); }
  void Click(const QModelIndex& index) const {
    ASSERT_TRUE(index.isValid());
    window.tree()->setCurrentIndex(index);
  }

  // Members are made in order: the application and clean settings come before the window.
  struct FreshApp {
    FreshApp() { ResetStoredSettings(); }
  } app;
  TempFolder folder;
  TempFolder programFolder;
  ScriptedPrompts prompts;
  mutable frmMain window{programFolder.path(), &prompts};
};

TEST_F(MainWindowTest, StartsEmptyWithItsMenusNamedAndTheFileCommandsDisabled) {
  EXPECT_EQ(window.objectName(), QStringLiteral("frmMain"));
  EXPECT_EQ(window.windowTitle(), QStringLiteral("Orchidlamp IPD Reader"));
  EXPECT_EQ(PanelText("main"), QStringLiteral("Please open IPD file from File menu"));
  EXPECT_EQ(PanelText("details"), QString());
  EXPECT_TRUE(FileExists(programFolder.File("media")));
  EXPECT_EQ(window.model()->index(0, 0).data().toString(), QStringLiteral("IPD Databases"));

  const std::vector<std::pair<const char*, const char*>> captions = {
      {"mOpen", "&Open..."},        {"mSaveas", "&Save As/Convert To..."}, {"mEdit", "&Edit..."},
      {"mExport", "Ex&port..."},    {"mSearch", "&Search..."},             {"epng", "PNG Images..."},
      {"ejpg", "JPG Images..."},    {"mSettings", "&Settings..."},         {"mMainhelp", "Orchidlamp H&elp"},
      {"mAbout", "&About Orchidlamp"}, {"mExit", nullptr},                 {"mMerge", nullptr},
      {"mSplit", nullptr}};
  for (const auto& [name, caption] : captions) {
    ASSERT_NE(Item(name), nullptr) << name;
    if (caption) {
      EXPECT_EQ(Item(name)->text(), QString::fromLatin1(caption)) << name;
    }
  }
  EXPECT_EQ(Menu("mServicebook")->title(), QStringLiteral("&Service Book"));
  EXPECT_EQ(Menu("mManipulate")->title(), QStringLiteral("&Manipulate"));
  EXPECT_EQ(Menu("mMedia")->title(), QStringLiteral("Search and Export &Media"));
  EXPECT_EQ(Menu("mOptions")->title(), QStringLiteral("&Options"));
  ASSERT_NE(Menu("mFile"), nullptr);
  ASSERT_NE(Menu("mhelp"), nullptr);

  EXPECT_FALSE(Item("mSaveas")->isEnabled());
  EXPECT_FALSE(MenuEnabled("mServicebook"));
  EXPECT_FALSE(MenuEnabled("mManipulate"));
  EXPECT_TRUE(Item("mOpen")->isEnabled());
  EXPECT_TRUE(MenuEnabled("mOptions"));
}

TEST_F(MainWindowTest, MenuPicturesSitAtTheirPositions) {
  for (const char* name : {"mOpen", "mSaveas", "mExit", "mEdit", "mExport", "mMerge", "mSplit", "mSearch",
                           "mSettings", "mMainhelp"})
    EXPECT_FALSE(Item(name)->icon().isNull()) << name;
  EXPECT_FALSE(Menu("mMedia")->menuAction()->icon().isNull());
  EXPECT_TRUE(Item("mAbout")->icon().isNull());
  EXPECT_TRUE(Item("epng")->icon().isNull());
  EXPECT_EQ(MenuImage::Key(3, 8), QStringLiteral("KEY38"));
}

TEST_F(MainWindowTest, OpeningABackupFillsTreeCaptionStatusAndMenus) {
  const QString path = OpenFixture();
  EXPECT_EQ(window.windowTitle(), QStringLiteral("Orchidlamp IPD Reader - ") + path);
  EXPECT_EQ(PanelText("main"), QStringLiteral("f.ipd"));
  EXPECT_EQ(PanelText("details"),
            QStringLiteral("2 SMS Messages, 0 Address Book (All), 1 Tasks, 2 Memos, 0 Calendar, 1 Phone Calls, "
                           "1 Service Book"));
  EXPECT_TRUE(Item("mSaveas")->isEnabled());
  EXPECT_TRUE(MenuEnabled("mManipulate"));
  EXPECT_TRUE(MenuEnabled("mServicebook"));
  EXPECT_TRUE(prompts.told.empty());
  EXPECT_FALSE(window.loading());
  EXPECT_TRUE(window.findChild<QWidget*>(QStringLiteral("wait_frame"))->isHidden());

  // The root shows the path, expanded; databases start collapsed.
  const QModelIndex root = window.model()->index(0, 0);
  EXPECT_EQ(root.data().toString(), path);
  EXPECT_TRUE(window.tree()->isExpanded(root));
  EXPECT_FALSE(window.tree()->isExpanded(window.model()->index(1, 0, root)));
  EXPECT_TRUE(VisibleFrames().empty());
}

TEST_F(MainWindowTest, CommandLinePathIsTheWholeLineWithACaseSensitiveExtension) {
  const std::string upper = folder.Write("f.IPD", MakeFixture().bytes);
  window.OpenCommandLine({"orchidlamp", QString::fromStdString(upper)});
  EXPECT_EQ(window.windowTitle(), QStringLiteral("Orchidlamp IPD Reader"));
  window.OpenCommandLine({"orchidlamp"});
  EXPECT_EQ(window.windowTitle(), QStringLiteral("Orchidlamp IPD Reader"));

  // An unquoted path with a space arrives as two words and is put back together.
  const std::string spaced = folder.Write("my phone.ipd", MakeFixture().bytes);
  const QString spacedPath = QString::fromStdString(spaced);
  const qsizetype space = spacedPath.indexOf(QLatin1Char(' '));
  window.OpenCommandLine({"orchidlamp", spacedPath.left(space), spacedPath.mid(space + 1)});
  EXPECT_EQ(window.windowTitle(), QStringLiteral("Orchidlamp IPD Reader - ") + spacedPath);
  EXPECT_EQ(PanelText("main"), QStringLiteral("my phone.ipd"));

  EXPECT_EQ(MainController::KindOfGivenPath("a.bbb"), BackupKind::Bbb);
  EXPECT_EQ(MainController::KindOfGivenPath("a.BBB"), std::nullopt);
  EXPECT_EQ(MainController::KindOfGivenPath("a.ipd "), std::nullopt);
}

TEST_F(MainWindowTest, CancellingTheOpenDialogKeepsTheOpenFile) {
  const QString path = OpenFixture();
  const std::size_t nodes = window.controller().workspace().tree().size();
  prompts.files.push_back(std::nullopt);
  window.mOpen_Click();
  ASSERT_EQ(prompts.filters.size(), 1u);
  EXPECT_EQ(prompts.filters[0], QStringLiteral("IPD Files (*.ipd);;BBB Files (*.bbb)"));
  EXPECT_EQ(window.windowTitle(), QStringLiteral("Orchidlamp IPD Reader - ") + path);
  EXPECT_EQ(window.controller().workspace().tree().size(), nodes);
  EXPECT_TRUE(Item("mSaveas")->isEnabled());

  // Choosing a file through the dialog opens it; no node of the first file stays.
  IpdBuilder other;
  other.Database("Handheld Agent").Database("Tasks");
  other.Add(FieldRecord(1, {{2, Text("Only task")}}));
  const std::string second = folder.Write("second.ipd", other.Build());
  prompts.files.push_back(ChosenFile{QString::fromStdString(second), 1});
  window.mOpen_Click();
  EXPECT_EQ(window.controller().workspace().tree().size(), 4u);
  EXPECT_TRUE(Record("Tasks", "Only task").isValid());
  EXPECT_FALSE(Record("Memos", "Shopping").isValid());
}

TEST_F(MainWindowTest, LoadFailureShowsTheLoadersMessage) {
  const std::string path = folder.Write("broken.ipd", Text("not a backup at all"));
  window.OpenGivenPath(QString::fromStdString(path));
  ASSERT_EQ(prompts.told.size(), 1u);
  EXPECT_EQ(prompts.told[0].text, "Error Parsing the file, couldn't read the DB titles");
  EXPECT_FALSE(Item("mSaveas")->isEnabled());
  EXPECT_FALSE(MenuEnabled("mManipulate"));
  EXPECT_FALSE(window.loading());
  EXPECT_EQ(window.model()->rowCount(), 1);
}

TEST_F(MainWindowTest, ClickingRecordsShowsExactlyTheirKindsFrame) {
  OpenFixture();
  Click(Record("SMS Messages", "+15551234"));
  EXPECT_EQ(VisibleFrames(), std::vector<QString>{"SMSmessages"});
  EXPECT_EQ(Box("tel_number"), QStringLiteral("+15551234"));
  EXPECT_EQ(Box("msg_text"), QStringLiteral("Hello there"));
  EXPECT_FALSE(Box("dir_text").isEmpty());

  Click(Record("Address Book", "Ann Lee"));
  EXPECT_EQ(VisibleFrames(), std::vector<QString>{"Contacts"});
  EXPECT_EQ(Box("FirstName"), QStringLiteral("Ann"));
  EXPECT_EQ(Box("LastName"), QStringLiteral("Lee"));
  EXPECT_EQ(Box("Company"), QStringLiteral("Acme"));
  EXPECT_EQ(Box("Email"), QStringLiteral("ann@x.org"));
  EXPECT_EQ(window.findChild<QTabWidget*>(QStringLiteral("ctab"))->count(), 5);
  EXPECT_EQ(window.findChild<QWidget*>(QStringLiteral("Contacts"))->findChildren<QLineEdit*>().size() +
                window.findChild<QWidget*>(QStringLiteral("Contacts"))->findChildren<QPlainTextEdit*>().size(),
            35);

  Click(Record("Calendar", "Meeting"));
  EXPECT_EQ(VisibleFrames(), std::vector<QString>{"Calendar"});
  EXPECT_EQ(Box("ct34"), QStringLiteral("Meeting"));
  EXPECT_EQ(Box("ct35"), QStringLiteral("Room 4"));

  Click(Record("Memos", "Shopping"));
  EXPECT_EQ(VisibleFrames(), std::vector<QString>{"Memo"});
  EXPECT_EQ(Box("ct44"), QStringLiteral("Shopping"));
  EXPECT_EQ(Box("ct45"), QStringLiteral("Milk\nEggs"));

  Click(Record("Tasks", "Call Bob"));
  EXPECT_EQ(VisibleFrames(), std::vector<QString>{"Task"});
  EXPECT_EQ(Box("ct40"), QStringLiteral("Call Bob"));

  Click(Record("Phone Call Logs", "Bob"));
  EXPECT_EQ(VisibleFrames(), std::vector<QString>{"pcallslog"});
  EXPECT_EQ(Box("ct46"), QStringLiteral("Bob"));
  EXPECT_EQ(Box("ct47"), QStringLiteral("5550001"));
  EXPECT_EQ(Box("ct50"), QStringLiteral("Placed Call"));
  EXPECT_FALSE(MenuEnabled("mServicebook"));

  Click(Record("Service Book", "Browser Config"));
  EXPECT_EQ(VisibleFrames(), std::vector<QString>{"Servicebook"});
  EXPECT_EQ(Box("hrtnet17"), QStringLiteral("Browser Config"));
  EXPECT_EQ(Box("hrtnet18"), QStringLiteral("S1"));
  EXPECT_EQ(Box("hrtnet19"), QStringLiteral("BrowserConfig"));
  EXPECT_EQ(Box("hrtnet20"), QStringLiteral("-1"));
  EXPECT_TRUE(MenuEnabled("mServicebook"));
  EXPECT_EQ(window.findChild<QTabWidget*>(QStringLiteral("SSTab1"))->count(), 3);

  // What the user types into a service-book box is what the editor starts from.
  auto* name = window.findChild<QLineEdit*>(QStringLiteral("hrtnet17"));
  name->selectAll();
  QTest::keyClicks(name, "Edited");
  EXPECT_EQ(window.controller().workspace().hrtnet[17], "Edited");

  // The root (many children) shows nothing and turns the Service Book menu off.
  Click(window.model()->index(0, 0));
  EXPECT_TRUE(VisibleFrames().empty());
  EXPECT_FALSE(MenuEnabled("mServicebook"));
}

TEST_F(MainWindowTest, RecordsOfUnknownDatabasesAndDatabaseNodesShowNothing) {
  OpenFixture();
  const QModelIndex root = window.model()->index(0, 0);
  Click(window.model()->index(1, 0, root));  // "SMS Messages", two records
  EXPECT_TRUE(VisibleFrames().empty());
  Click(Record("Memos", "Shopping"));
  Click(window.model()->index(4, 0, root));  // "Tasks", one record: its parent is the root
  EXPECT_TRUE(VisibleFrames().empty());
  EXPECT_EQ(window.model()->index(8, 0, root).data().toString(), QStringLiteral("Later Device Data"));
  EXPECT_EQ(window.model()->rowCount(window.model()->index(8, 0, root)), 0);
}

TEST_F(MainWindowTest, SearchSelectsOneMatchAfterAnother) {
  OpenFixture();
  prompts.texts = {QStringLiteral("call"), QStringLiteral("call"), QStringLiteral("call")};
  prompts.answers = {true, true};
  window.mSearch_Click();
  ASSERT_EQ(prompts.asked.size(), 3u);
  EXPECT_EQ(prompts.asked[0], std::make_pair(QStringLiteral("Find"), QStringLiteral("Find what?")));
  ASSERT_EQ(prompts.questions.size(), 2u);
  EXPECT_EQ(prompts.questions[0], QStringLiteral("Find|Found Phone Call Logs\r\nFind next matching item? "));
  EXPECT_EQ(prompts.questions[1], QStringLiteral("Find|Found Call Bob\r\nFind next matching item? "));
  // No third match: the search ends silently and the selection stays.
  EXPECT_EQ(window.tree()->currentIndex(), Record("Tasks", "Call Bob"));
  EXPECT_TRUE(prompts.told.empty());
}

TEST_F(MainWindowTest, SearchKeepsCountingWhenTheTextIsRetyped) {
  OpenFixture();
  prompts.texts = {QStringLiteral("Call Bob"), QStringLiteral("+1555")};
  prompts.answers = {true, false};
  window.mSearch_Click();
  ASSERT_EQ(prompts.questions.size(), 2u);
  // The second pass asks for the second node holding the new text.
  EXPECT_EQ(window.tree()->currentIndex(), Record("SMS Messages", "+15559999"));
  EXPECT_TRUE(window.tree()->isExpanded(Record("SMS Messages", "+15559999").parent()));

  // An empty answer ends the search before anything is looked up.
  prompts.texts = {QString()};
  window.mSearch_Click();
  EXPECT_EQ(prompts.questions.size(), 2u);
}

TEST_F(MainWindowTest, HelpTellsWhereTheManualIs) {
  window.mMainhelp_Click();
  ASSERT_EQ(prompts.told.size(), 1u);
  EXPECT_EQ(prompts.told[0].text, "Please check Orchidlamp folder for the help PDF file");
  EXPECT_EQ(prompts.told[0].title, "");
}

TEST_F(MainWindowTest, AboutBoxClosesOnAClickAndWhenAFileIsOpened) {
  window.mAbout_Click();
  auto* splash = window.findChild<QWidget*>(QStringLiteral("frmSplash"));
  ASSERT_NE(splash, nullptr);
  EXPECT_TRUE(splash->isVisible());
  QStringList texts;
  for (QLabel* label : splash->findChildren<QLabel*>()) texts << label->text();
  EXPECT_TRUE(texts.contains(QStringLiteral("Orchidlamp")));
  EXPECT_TRUE(texts.join(QLatin1Char(' ')).contains(QStringLiteral("3.5")));
  QTest::mouseClick(splash->findChild<QWidget*>(QStringLiteral("Image1")), Qt::LeftButton);
  EXPECT_FALSE(splash->isVisible());
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);

  window.mAbout_Click();
  splash = window.findChild<QWidget*>(QStringLiteral("frmSplash"));
  ASSERT_NE(splash, nullptr);
  OpenFixture();
  EXPECT_FALSE(splash->isVisible());
}

TEST_F(MainWindowTest, DroppingABackupOpensIt) {
  const std::string path = folder.Write("dropped.ipd", MakeFixture().bytes);
  QMimeData data;
  data.setUrls({QUrl::fromLocalFile(QString::fromStdString(path))});
  QDragEnterEvent enter(QPoint(10, 10), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QCoreApplication::sendEvent(&window, &enter);
  EXPECT_TRUE(enter.isAccepted());
  QDropEvent drop(QPointF(10, 10), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QCoreApplication::sendEvent(&window, &drop);
  QCoreApplication::processEvents();
  EXPECT_EQ(PanelText("main"), QStringLiteral("dropped.ipd"));

  QMimeData other;
  other.setUrls({QUrl::fromLocalFile(QStringLiteral("/tmp/notes.txt"))});
  QDragEnterEvent refused(QPoint(10, 10), Qt::CopyAction, &other, Qt::LeftButton, Qt::NoModifier);
  refused.setAccepted(false);
  QCoreApplication::sendEvent(&window, &refused);
  EXPECT_FALSE(refused.isAccepted());
}

TEST_F(MainWindowTest, StoredSettingsApplyAtTheNextOpen) {
  WriteStoredSettings(StoredSettings{"+11", "< >"});
  OpenFixture();
  EXPECT_EQ(window.controller().workspace().settings().timeZoneHours, 11.0);
  EXPECT_EQ(window.controller().workspace().settings().delimiter, "> <");
}

TEST_F(MainWindowTest, ExportPanelOffersTheSelectedKindAndWritesBesideTheBackup) {
  OpenFixture();
  auto* panel = window.findChild<QGroupBox*>(QStringLiteral("ExportToText"));
  ASSERT_NE(panel, nullptr);
  EXPECT_TRUE(panel->isHidden());

  // Nothing but a record may be exported.
  window.mExport_Click();
  ASSERT_EQ(prompts.told.size(), 1u);
  EXPECT_EQ(prompts.told[0].title, "Please select record first:");
  EXPECT_TRUE(panel->isHidden());

  Click(Record("Memos", "Shopping"));
  window.mExport_Click();
  EXPECT_FALSE(panel->isHidden());
  auto option = [&](int i) { return window.findChild<QRadioButton*>(QStringLiteral("ExOP%1").arg(i)); };
  EXPECT_EQ(panel->title(), QStringLiteral("Export to Text/CSV File"));
  EXPECT_EQ(option(0)->text(), QStringLiteral("Export Selected Memo"));
  EXPECT_EQ(option(1)->text(), QStringLiteral("Export All Memos"));
  EXPECT_EQ(option(2)->text(), QStringLiteral("Export All"));
  EXPECT_FALSE(option(1)->isHidden());

  option(1)->click();
  EXPECT_TRUE(option(1)->isChecked());
  window.findChild<QPushButton*>(QStringLiteral("Cexport"))->click();
  ASSERT_EQ(prompts.told.size(), 2u);
  const std::string said = prompts.told[1].text;
  ASSERT_EQ(said.rfind("Export to: " + folder.path() + "/OL_Export_", 0), 0u) << said;
  const std::string path = said.substr(11, said.size() - 11 - std::string(" is complete.").size());
  const Bytes written = ReadFile(path);
  EXPECT_NE(std::string(written.begin(), written.end()).find("Title,Memo\r\n"), std::string::npos);

  window.findChild<QPushButton*>(QStringLiteral("Command2"))->click();
  EXPECT_TRUE(panel->isHidden());
}

TEST_F(MainWindowTest, MediaSearchListsTheSavedPictures) {
  IpdBuilder b;
  b.Database("Handheld Agent").Database("Memos");
  b.Add(FieldRecord(1, {{1, Text("icon")}, {2, TinyPng()}}));
  const std::string path = folder.Write("media.ipd", b.Build());
  window.OpenGivenPath(QString::fromStdString(path));
  window.epng_Click();
  auto* list = window.findChild<QListWidget*>(QStringLiteral("ResultList"));
  ASSERT_NE(list, nullptr);
  EXPECT_FALSE(window.mediaFrame()->isHidden());
  ASSERT_EQ(list->count(), 1);
  EXPECT_TRUE(list->item(0)->text().startsWith(QString::fromStdString(programFolder.path())));
  EXPECT_TRUE(FileExists(list->item(0)->text().toStdString()));
  ASSERT_EQ(prompts.told.size(), 1u);
  EXPECT_EQ(prompts.told[0].title, "Extracting Media");
  EXPECT_EQ(prompts.told[0].text, "Successfully saved 1 PNG images in the media folder.");

  // No JPEG in the file: nothing saved, nothing said.
  window.ejpg_Click();
  EXPECT_EQ(list->count(), 0);
  EXPECT_EQ(prompts.told.size(), 1u);
}

TEST_F(MainWindowTest, ContactPhotoIsSavedAndShown) {
  IpdBuilder b;
  b.Database("Handheld Agent").Database("Address Book");
  b.Add(FieldRecord(1, {{32, Text("Ann")}, {77, TinyJpeg()}}));
  const std::string path = folder.Write("photo.ipd", b.Build());
  window.OpenGivenPath(QString::fromStdString(path));
  Click(Record("Address Book", "Ann "));
  const QString photoFile = Box("PhotoFile");
  EXPECT_EQ(photoFile.toStdString(), programFolder.File("PIC" + b.SpanOf(0).substr(0, b.SpanOf(0).find(':')) + ".jpg"));
  EXPECT_TRUE(FileExists(photoFile.toStdString()));
  auto* photo = window.findChild<QLabel*>(QStringLiteral("ContactPhoto"));
  ASSERT_NE(photo, nullptr);
  EXPECT_FALSE(photo->pixmap().isNull());
}

}  // namespace
}  // namespace orchidlamp
