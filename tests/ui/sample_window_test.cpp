// The window on the bundled sample, as a person uses it: every record kind shows
// its own frame with its values, and the search walks three matches.

#include <gtest/gtest.h>

#include <QGroupBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTreeView>

#include "gui_test_support.h"
#include "support/cli_runner.h"
#include "support/temp_folder.h"
#include "ui/detail_panels.h"
#include "ui/main_window.h"
#include "ui/tree_model.h"

namespace orchidlamp {
namespace {

using namespace orchidlamp::testing;

class SampleWindowTest : public ::testing::Test {
 protected:
  void SetUp() override {
    // A copy under a plain name: the root's text (its path) is a search candidate too.
    path = folder.Write("s.ipd", ReadFile(SamplePath()));
    window.OpenGivenPath(QString::fromStdString(path));
    ASSERT_EQ(window.controller().workspace().tree().size(), 41u);  // root, 12 databases, 28 records
  }
  QModelIndex Record(const QString& db, const QString& text) const { return RecordIndex(*window.model(), db, text); }
  // The frames shown after selecting `index`.
  std::vector<QString> Select(const QModelIndex& index) const {
    EXPECT_TRUE(index.isValid());
    window.tree()->setCurrentIndex(index);
    std::vector<QString> visible;
    for (QGroupBox* frame : window.panels()->findChildren<QGroupBox*>(QString(), Qt::FindDirectChildrenOnly))
      if (!frame->isHidden()) visible.push_back(frame->objectName());
    return visible;
  }
  QString Box(const char* name) const {
    QWidget* box = window.findChild<QWidget*>(QString::fromLatin1(name));
    if (auto* line = qobject_cast<QLineEdit*>(box)) return line->text();
    if (auto* text = qobject_cast<QPlainTextEdit*>(box)) return text->toPlainText();
    return QStringLiteral("<missing>");
  }

  struct FreshApp {
    FreshApp() { ResetStoredSettings(); }
  } app;
  TempFolder folder, programFolder;
  std::string path;
  ScriptedPrompts prompts;
  mutable frmMain window{programFolder.path(), &prompts};
};

TEST_F(SampleWindowTest, EveryKindShowsItsFrameWithItsValues) {
  EXPECT_EQ(Select(Record("AutoText", "teh")), std::vector<QString>{"AutoTextm"});
  EXPECT_EQ(Box("atr0"), QStringLiteral("teh"));
  EXPECT_EQ(Box("atr1"), QStringLiteral("the"));
  EXPECT_EQ(Select(Record("Browser Bookmarks", "Weather")), std::vector<QString>{"BBookmarks"});
  EXPECT_EQ(Box("bbkN1"), QStringLiteral("Weather"));
  EXPECT_TRUE(Box("bbkN2").startsWith(QStringLiteral("http")));
  EXPECT_EQ(Select(Record("Address Book - All", "Maria Garcia")), std::vector<QString>{"Contacts"});
  EXPECT_EQ(Box("FirstName"), QStringLiteral("Maria"));
  EXPECT_EQ(Select(Record("Calendar - All", "Project review")), std::vector<QString>{"Calendar"});
  EXPECT_EQ(Box("ct34"), QStringLiteral("Project review"));
  EXPECT_EQ(Select(Record("SMS Messages", "+971505550142")), std::vector<QString>{"SMSmessages"});
  EXPECT_EQ(Select(Record("Phone Call Logs", "+16135550000")), std::vector<QString>{"pcallslog"});
  EXPECT_EQ(Box("ct50"), QStringLiteral("Missed Call"));
  EXPECT_EQ(Select(Record("Service Book", "Desktop [CMIME]")), std::vector<QString>{"Servicebook"});
  EXPECT_EQ(Box("hrtnet17"), QStringLiteral("Desktop [CMIME]"));
  EXPECT_EQ(Select(Record("Tasks", "Call the bank")), std::vector<QString>{"Task"});
  EXPECT_EQ(Select(Record("Memos", "Shopping list")), std::vector<QString>{"Memo"});
  EXPECT_EQ(Select(Record("Calendar", "Dentist")), std::vector<QString>{"Calendar"});
  EXPECT_EQ(Select(Record("Address Book", "Omar")), std::vector<QString>{"Contacts"});
}

// Three nodes hold "ser": the Browser Bookmarks and Service Book databases, then
// the record "Browser Config". Each Yes counts one further from the top.
TEST_F(SampleWindowTest, SearchWalksThreeMatchesAndEndsSilentlyAfterThem) {
  prompts.texts = {QStringLiteral("ser"), QStringLiteral("ser"), QStringLiteral("ser"), QStringLiteral("ser")};
  prompts.answers = {true, true, true};
  window.mSearch_Click();
  ASSERT_EQ(prompts.questions.size(), 3u);
  EXPECT_EQ(prompts.questions[0], QStringLiteral("Find|Found Browser Bookmarks\r\nFind next matching item? "));
  EXPECT_EQ(prompts.questions[1], QStringLiteral("Find|Found Service Book\r\nFind next matching item? "));
  EXPECT_EQ(prompts.questions[2], QStringLiteral("Find|Found Browser Config\r\nFind next matching item? "));
  EXPECT_EQ(prompts.asked.size(), 4u);  // the fourth pass finds nothing and ends without a word
  EXPECT_EQ(window.tree()->currentIndex(), Record("Service Book", "Browser Config"));
  EXPECT_TRUE(prompts.told.empty());
}

}  // namespace
}  // namespace orchidlamp
