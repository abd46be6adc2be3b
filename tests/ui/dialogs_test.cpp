// The window's dialogs driven as a user would: through the menu, the trees'
// pictures and keys, and the dialogs' buttons, with the file dialogs answered
// by ScriptedPrompts. Every file written is loaded back.

#include <gtest/gtest.h>

#include <QAction>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <QTimer>
#include <QTreeView>
#include <functional>

#include "convert/open_backup.h"
#include "core/settings.h"
#include "editing/merge_source.h"
#include "editing/selection_tree.h"
#include "gui_test_support.h"
#include "records/record_kinds.h"
#include "support/temp_folder.h"
#include "generators/tiny_images.h"
#include "ui/main_window.h"
#include "ui/merge_dialog.h"
#include "ui/selection_tree_view.h"
#include "ui/service_book_dialog.h"
#include "ui/split_dialog.h"
#include "ui/tree_model.h"

namespace orchidlamp {
namespace {

using namespace orchidlamp::testing;

ChosenFile Answer(const std::string& path, int filterIndex = 1) {
  return ChosenFile{QString::fromStdString(path), filterIndex};
}

// The node of `tree` with this text under `parent` (kNoNode: anywhere).
NodeId Find(const DatabaseTree& tree, const std::string& text, NodeId parent = kNoNode) {
  for (NodeId id = 0; id < static_cast<NodeId>(tree.size()); ++id)
    if (tree[id].text == text && (parent == kNoNode || tree[id].parent == parent)) return id;
  return kNoNode;
}

// Database names of a written IPD and their record counts, as the merge's own
// loader reads them back (it knows the nine mergeable names).
std::vector<std::pair<std::string, int>> Databases(const std::string& path) {
  KindLabeller labeller;
  const auto loaded = LoadSecondFile(path, labeller);
  EXPECT_TRUE(loaded) << (loaded ? "" : loaded.failure().message.text);
  std::vector<std::pair<std::string, int>> out;
  if (!loaded) return out;
  const DatabaseTree& tree = loaded.value().tree;
  for (NodeId id = 0; id < static_cast<NodeId>(tree.size()); ++id)
    if (tree[id].parent == 0) out.emplace_back(tree[id].text, tree[id].childCount);
  return out;
}

class DialogsTest : public ::testing::Test {
 protected:
  std::string OpenBytes(const std::string& name, const Bytes& bytes) {
    const std::string path = folder.Write(name, bytes);
    window.OpenGivenPath(QString::fromStdString(path));
    return path;
  }
  // Runs `inside` once the modal dialog of type D that `menuItem` opens is up,
  // then closes it. The dialog is looked for until it shows: building it runs
  // events already (its tree is copied off the window's thread).
  template <class D>
  void WithModal(const char* menuItem, const std::function<void(D&)>& inside) {
    bool ran = false;
    QTimer poll;
    poll.setInterval(0);
    QObject::connect(&poll, &QTimer::timeout, &window, [&] {
      D* dialog = window.findChild<D*>();
      if (!dialog || !dialog->isVisible() || ran) return;
      poll.stop();
      EXPECT_TRUE(dialog->isModal());
      ran = true;
      inside(*dialog);
      dialog->close();
    });
    poll.start();
    window.findChild<QAction*>(QString::fromLatin1(menuItem))->trigger();
    poll.stop();
    EXPECT_TRUE(ran);
    EXPECT_EQ(window.findChild<D*>(), nullptr);  // the dialog lives as long as its command
  }
  static void ClickImage(SelectionTreeView& view, NodeId node) {
    const QModelIndex index = view.treeModel()->IndexOf(node);
    view.scrollTo(index);
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, view.ImageRect(index).center());
  }
  static void ClickText(SelectionTreeView& view, NodeId node) {
    const QModelIndex index = view.treeModel()->IndexOf(node);
    const QRect row = view.visualRect(index);
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, QPoint(view.ImageRect(index).right() + 12, row.center().y()));
  }
  template <class B>
  B* Child(QWidget& parent, const char* name) {
    return parent.findChild<B*>(QString::fromLatin1(name));
  }
  // The path in "File saved as <path>"-like messages.
  static std::string PathAfter(const Message& message, const std::string& prefix) {
    EXPECT_EQ(message.text.rfind(prefix, 0), 0u) << message.text;
    return message.text.substr(std::min(prefix.size(), message.text.size()));
  }

  struct FreshApp {
    FreshApp() { ResetStoredSettings(); }
  } app;
  TempFolder folder;
  TempFolder programFolder;
  ScriptedPrompts prompts;
  frmMain window{programFolder.path(), &prompts};
};

TEST_F(DialogsTest, SplitTicksByPictureAndSpaceOnlyAndWritesTheTickedRecord) {
  OpenBytes("f.ipd", MakeFixture().bytes);
  const std::string out = folder.File("split.ipd");
  WithModal<frmSplit>("mSplit", [&](frmSplit& dialog) {
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Split IPD file"));
    EXPECT_EQ(Child<QPushButton>(dialog, "btnSplit")->text(), QStringLiteral("Split Selected"));
    EXPECT_EQ(Child<QPushButton>(dialog, "btnExit")->text(), QStringLiteral("Exit"));
    SelectionTreeView& view = *dialog.tvwTree();
    EXPECT_EQ(view.objectName(), QStringLiteral("tvwTree"));
    DatabaseTree& tree = dialog.selection();
    for (NodeId id = 0; id < static_cast<NodeId>(tree.size()); ++id) EXPECT_EQ(tree[id].image, ImageKey::TickNone);

    const NodeId sms = Find(tree, "SMS Messages", 0);
    ASSERT_NE(sms, kNoNode);
    const NodeId first = tree[sms].firstChild;
    const NodeId second = tree[first].next;
    const NodeId memos = Find(tree, "Memos", 0);

    // The text of a node is no tick box.
    ClickText(view, first);
    EXPECT_EQ(tree[first].image, ImageKey::TickNone);
    ClickImage(view, first);
    EXPECT_EQ(tree[first].image, ImageKey::TickAll);
    EXPECT_EQ(tree[sms].image, ImageKey::TickSome);
    EXPECT_FALSE(view.treeModel()->IndexOf(first).data(Qt::DecorationRole).isNull());

    // Space toggles the selected node; any other character is swallowed and
    // moves nothing.
    view.setCurrentIndex(view.treeModel()->IndexOf(memos));
    QTest::keyClick(&view, Qt::Key_Space);
    EXPECT_EQ(tree[memos].image, ImageKey::TickAll);
    QTest::keyClick(&view, 'S');
    QTest::keyClick(&view, Qt::Key_Return);
    EXPECT_EQ(view.currentIndex(), view.treeModel()->IndexOf(memos));
    EXPECT_EQ(tree[memos].image, ImageKey::TickAll);
    QTest::keyClick(&view, Qt::Key_Space);
    EXPECT_EQ(tree[memos].image, ImageKey::TickNone);
    EXPECT_EQ(tree[second].image, ImageKey::TickNone);

    prompts.saves.push_back(Answer(out));
    Child<QPushButton>(dialog, "btnSplit")->click();
  });
  ASSERT_EQ(prompts.saveFilters.size(), 1u);
  EXPECT_EQ(prompts.saveFilters[0], QStringLiteral("IPD Files (*.ipd)"));
  ASSERT_EQ(prompts.told.size(), 1u);
  EXPECT_EQ(prompts.told[0].title, "Split is complete");
  EXPECT_EQ(prompts.told[0].icon, MessageIcon::Information);
  EXPECT_EQ(PathAfter(prompts.told[0], "File saved as "), out);
  EXPECT_EQ(Databases(out), (std::vector<std::pair<std::string, int>>{{"SMS Messages", 1}}));
}

TEST_F(DialogsTest, SplitCancelledWritesNothing) {
  OpenBytes("f.ipd", MakeFixture().bytes);
  WithModal<frmSplit>("mSplit", [&](frmSplit& dialog) { Child<QPushButton>(dialog, "btnSplit")->click(); });
  EXPECT_TRUE(prompts.told.empty());
}

TEST_F(DialogsTest, MergeJoinsDatabasesTickedInBothTrees) {
  OpenBytes("first.ipd", MakeFixture().bytes);
  IpdBuilder b;
  b.Database("Tasks").Database("AutoText").Database("SMS Messages");
  b.Add(FieldRecord(0, {{2, Text("Second task")}}));
  b.Add(FieldRecord(0, {{2, Text("Third task")}}));
  b.Add(FieldRecord(1, {{1, Text("teh")}, {2, Text("the")}}));
  b.Add(SmsRecord(2, true, 0, 0, {{2, Text("+1555")}, {4, Text("Hi")}}));
  const std::string secondPath = folder.Write("second.ipd", b.Build());
  const std::string out = folder.File("merged.ipd");

  WithModal<frmMerge>("mMerge", [&](frmMerge& dialog) {
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Merge IPD files"));
    EXPECT_EQ(dialog.tvwsTree()->treeModel()->rowCount(), 0);

    prompts.files.push_back(Answer(secondPath));
    Child<QPushButton>(dialog, "smBrowse")->click();
    EXPECT_EQ(dialog.smIPD()->text(), QString::fromStdString(secondPath));
    ASSERT_NE(dialog.second(), nullptr);
    DatabaseTree& second = dialog.second()->tree;
    EXPECT_EQ(RootText(second), secondPath);
    EXPECT_EQ(Find(second, "AutoText", 0), kNoNode);  // not mergeable: no node

    DatabaseTree& first = dialog.firstSelection();
    ClickImage(*dialog.tvwfTree(), Find(first, "Tasks", 0));
    ClickImage(*dialog.tvwsTree(), Find(second, "Tasks", 0));
    ClickImage(*dialog.tvwsTree(), Find(second, "SMS Messages", 0));
    // Unticking the second file's SMS again leaves it out.
    ClickImage(*dialog.tvwsTree(), Find(second, "SMS Messages", 0));
    ClickImage(*dialog.tvwfTree(), Find(first, "Memos", 0));
    EXPECT_EQ(first[Find(first, "Tasks", 0)].image, ImageKey::TickAll);
    EXPECT_EQ(second[Find(second, "SMS Messages", 0)].image, ImageKey::TickNone);

    prompts.saves.push_back(Answer(out));
    Child<QPushButton>(dialog, "btnMerge")->click();
  });
  ASSERT_EQ(prompts.told.size(), 1u);
  EXPECT_EQ(prompts.told[0].title, " merging completed successfully");
  EXPECT_EQ(PathAfter(prompts.told[0], "File saved as "), out);
  // The fixed order puts Memos before Tasks; the tasks of both files are one database.
  EXPECT_EQ(Databases(out), (std::vector<std::pair<std::string, int>>{{"Memos", 2}, {"Tasks", 3}}));
}

TEST_F(DialogsTest, MergeReportsASecondFileThatIsNoBackup) {
  OpenBytes("first.ipd", MakeFixture().bytes);
  const std::string junk = folder.Write("junk.ipd", Bytes{'n', 'o', 'p', 'e'});
  WithModal<frmMerge>("mMerge", [&](frmMerge& dialog) {
    prompts.files.push_back(Answer(junk));
    Child<QPushButton>(dialog, "smBrowse")->click();
    EXPECT_EQ(dialog.second(), nullptr);
    EXPECT_EQ(dialog.tvwsTree()->treeModel()->rowCount(), 0);
  });
  ASSERT_EQ(prompts.told.size(), 1u);
  EXPECT_FALSE(prompts.told[0].text.empty());
}

class ServiceBookEditorTest : public DialogsTest {
 protected:
  void SetUp() override {
    IpdBuilder b;
    b.Database("Memos").Database("Service Book");
    b.Add(FieldRecord(1, {{3, Text("Browser Config")}, {7, Text("S1")}, {8, Text("BrowserConfig")}, {6, LE32(5)}}));
    b.Add(FieldRecord(1, {{3, Text("Email")}, {7, Text("S2")}, {8, Text("CMIME")}, {6, LE32(0xFFFFFFFF)}}));
    b.Add(FieldRecord(1, {{3, Text("Sync")}, {7, Text("S3")}, {8, Text("SYNC")}, {6, LE32(1)}}));
    OpenBytes("sb.ipd", b.Build());
  }
  void Select(int row) {
    TreeModel* m = window.model();
    const QModelIndex root = m->index(0, 0);
    for (int d = 0; d < m->rowCount(root); ++d)
      if (m->index(d, 0, root).data().toString() == QStringLiteral("Service Book"))
        window.tree()->setCurrentIndex(m->index(row, 0, m->index(d, 0, root)));
  }
};

TEST_F(ServiceBookEditorTest, OpensModelessOnTheSelectedRecordAndSavesBothWays) {
  window.findChild<QAction*>(QStringLiteral("mEdit"))->trigger();
  ASSERT_EQ(prompts.told.size(), 1u);
  EXPECT_EQ(prompts.told[0].title, "Please select record first:");
  EXPECT_EQ(prompts.told[0].text, "No Service Book record is selected!\r\nPlease select one for edit");
  EXPECT_EQ(prompts.told[0].icon, MessageIcon::Exclamation);

  Select(1);
  window.findChild<QAction*>(QStringLiteral("mEdit"))->trigger();
  EditSBForm* editor = window.editor();
  ASSERT_NE(editor, nullptr);
  EXPECT_TRUE(editor->isVisible());
  EXPECT_FALSE(editor->isModal());
  EXPECT_EQ(editor->objectName(), QStringLiteral("EditSB"));
  EXPECT_TRUE(editor->heading()->text().startsWith(QStringLiteral("Edit the *")));
  EXPECT_TRUE(editor->heading()->text().endsWith(QStringLiteral("* service book")));
  EXPECT_EQ(editor->Box(17)->text(), QStringLiteral("Email"));
  EXPECT_EQ(editor->Box(18)->text(), QStringLiteral("S2"));
  EXPECT_EQ(editor->Box(20)->text(), QStringLiteral("-1"));
  for (const char* name : {"Save", "SaveAll", "Command1"}) EXPECT_NE(Child<QPushButton>(*editor, name), nullptr) << name;

  editor->Box(17)->setText(QStringLiteral("Edited Mail"));
  Child<QPushButton>(*editor, "Save")->click();
  ASSERT_EQ(prompts.told.size(), 2u);
  const std::string saved = PathAfter(prompts.told[1], "File saved as ");
  EXPECT_EQ(saved.rfind(folder.path() + "/OL_Export_", 0), 0u) << saved;
  EXPECT_EQ(Databases(saved), (std::vector<std::pair<std::string, int>>{{"Service Book", 1}}));
  const Bytes one = ReadFile(saved);
  const std::string oneText(one.begin(), one.end());
  EXPECT_NE(oneText.find("Edited Mail"), std::string::npos);

  // SaveAll: the whole database, the edited record in its place. It is longer
  // than the single save, so it overwrites that file whole within the same second.
  Child<QPushButton>(*editor, "SaveAll")->click();
  ASSERT_EQ(prompts.told.size(), 3u);
  const std::string all = PathAfter(prompts.told[2], "File saved as ");
  const Bytes bytes = ReadFile(all);
  const std::string text(bytes.begin(), bytes.end());
  const auto browser = text.find("Browser Config"), edited = text.find("Edited Mail"), sync = text.find("Sync");
  ASSERT_NE(edited, std::string::npos);
  EXPECT_LT(browser, edited);
  EXPECT_LT(edited, sync);
  EXPECT_EQ(text.find("Email"), std::string::npos);

  // A blank name refuses the record with the critical message; the file is still written.
  editor->Box(17)->clear();
  Child<QPushButton>(*editor, "Save")->click();
  ASSERT_EQ(prompts.told.size(), 5u);
  EXPECT_EQ(prompts.told[3].text, "Service-book name, UID, CID, UserID cannot be blank");
  EXPECT_EQ(prompts.told[3].icon, MessageIcon::Critical);

  Child<QPushButton>(*editor, "Command1")->click();
  EXPECT_FALSE(editor->isVisible());
}

TEST_F(DialogsTest, SaveAsWritesEachKindThatLoadsBack) {
  const std::string source = OpenBytes("f.ipd", MakeFixture().bytes);
  const std::size_t nodes = window.controller().workspace().tree().size();
  const std::vector<std::pair<std::string, int>> targets = {
      {folder.File("win.bbb"), 1}, {folder.File("mac.bbb"), 2}, {folder.File("copy.ipd"), 3}};
  for (const auto& [target, index] : targets) {
    prompts.saves.push_back(Answer(target, index));
    window.findChild<QAction*>(QStringLiteral("mSaveas"))->trigger();
  }
  ASSERT_EQ(prompts.saveFilters.size(), 3u);
  EXPECT_EQ(prompts.saveFilters[0],
            QStringLiteral("BBB (Windows) Files (*.bbb);;BBB (Mac) Files (*.bbb);;IPD Files (*.ipd)"));
  ASSERT_EQ(prompts.told.size(), 3u);
  for (std::size_t i = 0; i < targets.size(); ++i) {
    EXPECT_EQ(prompts.told[i].text, "File saved successfully in " + targets[i].first);
    KindLabeller labeller;
    Workspace back(labeller);
    const BackupKind kind = i < 2 ? BackupKind::Bbb : BackupKind::Ipd;
    const Status loaded = OpenBackup(back, targets[i].first, kind, StoredSettings{});
    ASSERT_TRUE(loaded) << targets[i].first << ": " << loaded.failure().message.text;
    EXPECT_EQ(back.tree().size(), nodes) << targets[i].first;
  }
  EXPECT_EQ(ReadFile(targets[2].first), ReadFile(source));

  // A cancelled dialog says nothing.
  window.findChild<QAction*>(QStringLiteral("mSaveas"))->trigger();
  EXPECT_EQ(prompts.told.size(), 3u);
}

TEST_F(DialogsTest, ExportPanelWritesTheSelectedRecordAndTheWholeTree) {
  OpenBytes("f.ipd", MakeFixture().bytes);
  TreeModel* m = window.model();
  const QModelIndex root = m->index(0, 0);
  for (int d = 0; d < m->rowCount(root); ++d)
    if (m->index(d, 0, root).data().toString() == QStringLiteral("Tasks"))
      window.tree()->setCurrentIndex(m->index(0, 0, m->index(d, 0, root)));
  window.findChild<QAction*>(QStringLiteral("mExport"))->trigger();
  auto option = [&](int i) { return window.findChild<QRadioButton*>(QStringLiteral("ExOP%1").arg(i)); };
  EXPECT_EQ(option(0)->text(), QStringLiteral("Export Selected Task"));
  auto exported = [&] {
    const std::string said = prompts.told.back().text;
    const std::string path = said.substr(11, said.size() - 11 - std::string(" is complete.").size());
    const Bytes bytes = ReadFile(path);
    return std::string(bytes.begin(), bytes.end());
  };
  option(0)->click();
  window.findChild<QPushButton*>(QStringLiteral("Bexport"))->click();
  ASSERT_EQ(prompts.told.size(), 1u);
  const std::string record = exported();
  EXPECT_NE(record.find("                           Task\r\n"), std::string::npos);
  EXPECT_NE(record.find("Call Bob"), std::string::npos);
  EXPECT_EQ(record.find("Shopping"), std::string::npos);

  // The whole tree as CSV: another extension, so no clash with the name above.
  option(2)->click();
  EXPECT_FALSE(option(0)->isChecked());
  window.findChild<QPushButton*>(QStringLiteral("Cexport"))->click();
  ASSERT_EQ(prompts.told.size(), 2u);
  const std::string tree = exported();
  EXPECT_NE(tree.find("Call Bob"), std::string::npos);
  EXPECT_NE(tree.find("Shopping"), std::string::npos);
  EXPECT_NE(tree.find("Hello there"), std::string::npos);
}

TEST_F(DialogsTest, DoubleClickOnASavedPictureOpensIt) {
  IpdBuilder b;
  b.Database("Handheld Agent").Database("Memos");
  b.Add(FieldRecord(1, {{1, Text("icon")}, {2, TinyPng()}}));
  OpenBytes("media.ipd", b.Build());
  window.findChild<QAction*>(QStringLiteral("epng"))->trigger();
  auto* list = window.findChild<QListWidget*>(QStringLiteral("ResultList"));
  ASSERT_EQ(list->count(), 1);
  QListWidgetItem* item = list->item(0);
  emit list->itemDoubleClicked(item);
  ASSERT_EQ(prompts.shown.size(), 1u);
  EXPECT_EQ(prompts.shown[0], item->text());
}

}  // namespace
}  // namespace orchidlamp
