#include "ui/tree_model.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QElapsedTimer>
#include <QIcon>
#include <fstream>

#include "core/workspace.h"
#include "gui_test_support.h"
#include "records/record_kinds.h"
#include "generators/large_backup.h"
#include "generators/sample_backup.h"
#include "support/temp_folder.h"
#include "ui/icon_set.h"

namespace orchidlamp {
namespace {

using namespace orchidlamp::testing;

// The model tester reports through qWarning with "FAIL!"; collect those.
std::vector<QString>* g_failures = nullptr;
void CollectFailures(QtMsgType, const QMessageLogContext&, const QString& text) {
  if (g_failures && text.contains(QStringLiteral("FAIL!"))) g_failures->push_back(text);
}

class TreeModelTest : public ::testing::Test {
 protected:
  void SetUp() override {
    GuiApp();
    g_failures = &failures;
    previous = qInstallMessageHandler(CollectFailures);
  }
  void TearDown() override {
    qInstallMessageHandler(previous);
    g_failures = nullptr;
  }
  Status Load(const Bytes& bytes) { return ws.Load(folder.Write("t.ipd", bytes), StoredSettings{}); }

  std::vector<QString> failures;
  QtMessageHandler previous = nullptr;
  KindLabeller labeller;
  Workspace ws{labeller};
  IconSet icons;
  TempFolder folder;
};

TEST_F(TreeModelTest, PassesTheModelTesterAcrossLoadsAndDetaching) {
  TreeModel model(ws.tree(), icons);
  QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Warning);
  ASSERT_EQ(model.rowCount(), 1);
  EXPECT_EQ(model.index(0, 0).data().toString(), QStringLiteral("IPD Databases"));

  model.Detach();
  ASSERT_TRUE(Load(SampleBackup()));
  model.Rebuild();
  model.Detach();
  ASSERT_TRUE(Load(MakeFixture().bytes));
  model.Rebuild();
  EXPECT_TRUE(failures.empty()) << failures.front().toStdString();
}

TEST_F(TreeModelTest, ShowsTheThreeLevelsWithTextsAndIcons) {
  const FixtureBackup fixture = MakeFixture();
  ASSERT_TRUE(Load(fixture.bytes));
  TreeModel model(ws.tree(), icons);
  ASSERT_EQ(model.rowCount(), 1);
  const QModelIndex root = model.index(0, 0);
  EXPECT_EQ(root.data().toString().toStdString(), folder.File("t.ipd"));
  EXPECT_FALSE(root.data(Qt::DecorationRole).value<QIcon>().isNull());  // "sheet"
  EXPECT_FALSE(model.parent(root).isValid());

  // Every database but "Options", in name-table order.
  QStringList databases;
  for (int r = 0; r < model.rowCount(root); ++r) databases << model.index(r, 0, root).data().toString();
  EXPECT_EQ(databases, (QStringList{"Handheld Agent", "SMS Messages", "Address Book", "Memos", "Tasks",
                                    "Phone Call Logs", "Service Book", "Calendar", "Later Device Data"}));
  EXPECT_FALSE(model.index(1, 0, root).data(Qt::DecorationRole).isValid());

  const QModelIndex sms = model.index(1, 0, root);
  ASSERT_EQ(model.rowCount(sms), 2);
  EXPECT_EQ(model.index(0, 0, sms).data().toString(), QStringLiteral("+15551234"));
  EXPECT_EQ(model.index(1, 0, sms).data().toString(), QStringLiteral("+15559999"));
  EXPECT_EQ(model.parent(model.index(1, 0, sms)), sms);
  EXPECT_FALSE(model.index(1, 0, sms).data(Qt::DecorationRole).value<QIcon>().isNull());
  EXPECT_FALSE(model.hasChildren(model.index(0, 0, sms)));

  const QModelIndex memos = model.index(3, 0, root);
  ASSERT_EQ(model.rowCount(memos), 2);
  EXPECT_EQ(model.index(1, 0, memos).data().toString(), QStringLiteral("sms list"));
  // A database of no known kind is there, without records.
  EXPECT_EQ(model.rowCount(model.index(8, 0, root)), 0);
  EXPECT_FALSE(model.index(2, 0, model.index(0, 0, sms)).isValid());
  EXPECT_FALSE(model.index(0, 1, root).isValid());
}

TEST_F(TreeModelTest, NodeIdsAndIndexesMapBothWays) {
  ASSERT_TRUE(Load(SampleBackup()));
  TreeModel model(ws.tree(), icons);
  for (NodeId id = 0; static_cast<std::size_t>(id) < ws.tree().size(); ++id) {
    const QModelIndex index = model.IndexOf(id);
    ASSERT_EQ(model.NodeOf(index), id);
    ASSERT_EQ(model.index(index.row(), 0, model.parent(index)), index);
    ASSERT_EQ(model.NodeOf(model.parent(index)), ws.tree()[id].parent);
  }
  EXPECT_EQ(model.NodeOf(QModelIndex()), kNoNode);
  EXPECT_FALSE(model.IndexOf(static_cast<NodeId>(ws.tree().size())).isValid());
}

TEST_F(TreeModelTest, DetachedModelShowsNothingUntilRebuilt) {
  ASSERT_TRUE(Load(MakeFixture().bytes));
  TreeModel model(ws.tree(), icons);
  model.Detach();
  EXPECT_EQ(model.rowCount(), 0);
  EXPECT_FALSE(model.IndexOf(0).isValid());
  model.Rebuild();
  EXPECT_EQ(model.rowCount(), 1);
}

// A well-used handheld: the model answers from its child index, so a database of
// tens of thousands of records costs no walk per row.
TEST_F(TreeModelTest, LargeBackupRowsResolveDirectly) {
  const std::string path = folder.File("large.ipd");
  {
    std::ofstream out(path, std::ios::binary);
    WriteLargeBackup(out, 200000, 7);
  }
  QElapsedTimer clock;
  clock.start();
  ASSERT_TRUE(ws.Load(path, StoredSettings{}));
  const qint64 loadMs = clock.restart();
  TreeModel model(ws.tree(), icons);
  const qint64 indexMs = clock.restart();
  const QModelIndex root = model.index(0, 0);
  std::size_t seen = 1 + static_cast<std::size_t>(model.rowCount(root));
  for (int d = 0; d < model.rowCount(root); ++d) {
    const QModelIndex db = model.index(d, 0, root);
    const int rows = model.rowCount(db);
    seen += static_cast<std::size_t>(rows);
    if (rows == 0) continue;
    const QModelIndex last = model.index(rows - 1, 0, db);
    ASSERT_EQ(ws.tree()[model.NodeOf(last)].parent, model.NodeOf(db));
    ASSERT_EQ(ws.tree()[model.NodeOf(db)].lastChild, model.NodeOf(last));
    ASSERT_EQ(model.parent(last), db);
  }
  EXPECT_EQ(seen, ws.tree().size());
  std::printf("[ measure ] 200000 records: load %lld ms, model index %lld ms, %zu nodes\n",
              static_cast<long long>(loadMs), static_cast<long long>(indexMs), ws.tree().size());
}

}  // namespace
}  // namespace orchidlamp
