#include "ui/options_dialog.h"

#include <gtest/gtest.h>

#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QTabWidget>

#include "gui_test_support.h"

namespace orchidlamp {
namespace {

using namespace orchidlamp::testing;

class OptionsDialogTest : public ::testing::Test {
 protected:
  OptionsDialogTest() { ResetStoredSettings(); }
  ScriptedPrompts prompts;
};

TEST_F(OptionsDialogTest, ShowsTheListsTabsAndTexts) {
  frmOptions dialog(prompts);
  EXPECT_EQ(dialog.objectName(), QStringLiteral("frmOptions"));
  EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Options"));
  auto* tabs = dialog.findChild<QTabWidget*>(QStringLiteral("tbsOptions"));
  ASSERT_NE(tabs, nullptr);
  ASSERT_EQ(tabs->count(), 2);
  EXPECT_EQ(tabs->tabText(0), QStringLiteral("Time Difference"));
  EXPECT_EQ(tabs->tabText(1), QStringLiteral("Export"));

  ASSERT_EQ(dialog.tzd()->count(), 23);
  EXPECT_EQ(dialog.tzd()->itemText(0), QStringLiteral("-11"));
  EXPECT_EQ(dialog.tzd()->itemText(11), QStringLiteral("GMT"));
  EXPECT_EQ(dialog.tzd()->itemText(22), QStringLiteral("+11"));
  ASSERT_EQ(dialog.exd()->count(), 8);
  EXPECT_EQ(dialog.exd()->itemText(4), QStringLiteral("' "));
  EXPECT_EQ(dialog.exd()->itemText(7), QStringLiteral("{ }"));
  // Never stored: the open flow's defaults.
  EXPECT_EQ(dialog.tzd()->currentText(), QStringLiteral("GMT"));
  EXPECT_EQ(dialog.exd()->currentText(), QStringLiteral(","));

  QStringList texts;
  for (QLabel* label : dialog.findChildren<QLabel*>()) texts << label->text();
  for (const char* expected : {"Select number of hours to add to date to reflect your timezone, default is GMT",
                               "The number of hours will be added to SMS, phone calls and other record dates to "
                               "show the correct date",
                               "Select the delimiter symbol to separate exported values",
                               "Choose the delimiter that suitable for your format"})
    EXPECT_TRUE(texts.contains(QString::fromLatin1(expected))) << expected;
  EXPECT_EQ(dialog.findChild<QPushButton*>(QStringLiteral("cmdOK"))->text(), QStringLiteral("OK"));
  EXPECT_EQ(dialog.findChild<QPushButton*>(QStringLiteral("cmdCancel"))->text(), QStringLiteral("Cancel"));
}

TEST_F(OptionsDialogTest, OkStoresWhatTheListsHoldAndSaysToReopen) {
  {
    frmOptions dialog(prompts);
    dialog.tzd()->setCurrentText(QStringLiteral("+11"));
    dialog.exd()->setCurrentText(QStringLiteral("' "));
    dialog.cmdOK_Click();
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
  }
  ASSERT_EQ(prompts.told.size(), 1u);
  EXPECT_EQ(prompts.told[0],
            (Message{"Settings saved, you need to reopen your file.", "Settings", MessageIcon::Information}));
  const StoredSettings stored = ReadStoredSettings();
  EXPECT_EQ(stored.timeZone, "+11");
  EXPECT_EQ(stored.exportDelimiter, "' ");
  // The apostrophe entry matches no delimiter and exports with ",".
  EXPECT_EQ(DeriveSettings(stored).delimiter, ",");

  frmOptions again(prompts);
  EXPECT_EQ(again.tzd()->currentText(), QStringLiteral("+11"));
  EXPECT_EQ(again.exd()->currentText(), QStringLiteral("' "));
}

TEST_F(OptionsDialogTest, CancelStoresNothing) {
  WriteStoredSettings(StoredSettings{"-3", "TAB"});
  frmOptions dialog(prompts);
  EXPECT_EQ(dialog.tzd()->currentText(), QStringLiteral("-3"));
  EXPECT_EQ(dialog.exd()->currentText(), QStringLiteral("TAB"));
  dialog.tzd()->setCurrentText(QStringLiteral("+5"));
  dialog.cmdCancel_Click();
  EXPECT_EQ(dialog.result(), QDialog::Rejected);
  EXPECT_EQ(ReadStoredSettings().timeZone, "-3");
  EXPECT_TRUE(prompts.told.empty());
}

TEST_F(OptionsDialogTest, AStoredTextOutsideTheListIsShownAndKept) {
  WriteStoredSettings(StoredSettings{"+12", "|"});
  frmOptions dialog(prompts);
  EXPECT_EQ(dialog.tzd()->currentText(), QStringLiteral("+12"));
  dialog.cmdOK_Click();
  EXPECT_EQ(ReadStoredSettings().timeZone, "+12");
  EXPECT_EQ(ReadStoredSettings().exportDelimiter, "|");
}

}  // namespace
}  // namespace orchidlamp
