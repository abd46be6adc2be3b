#include "ui/tree_model.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QIcon>

#include "core/workspace.h"
#include "generators/sample_backup.h"
#include "gui_test_support.h"
#include "records/record_kinds.h"
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

// Checked by QAbstractItemModelTester from the empty tree, through a load, a
// detach and a second load.
TEST_F(TreeModelTest, ShowsTheThreeLevelsAndPassesTheModelTesterAcrossLoads) {
  TreeModel model(ws.tree(), icons);
  QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Warning);
  EXPECT_EQ(model.index(0, 0).data().toString(), QStringLiteral("IPD Databases"));
  model.Detach();
  EXPECT_EQ(model.rowCount(), 0);  // nothing shown while the tree changes
  ASSERT_TRUE(Load(SampleBackup()));
  model.Rebuild();
  const QModelIndex root = model.index(0, 0);
  EXPECT_EQ(root.data().toString().toStdString(), folder.File("t.ipd"));
  EXPECT_FALSE(root.data(Qt::DecorationRole).value<QIcon>().isNull());  // "sheet"
  const QModelIndex sms = model.index(9, 0, root);
  EXPECT_EQ(sms.data().toString(), QStringLiteral("SMS Messages"));
  ASSERT_EQ(model.rowCount(sms), 4);
  EXPECT_EQ(model.index(1, 0, sms).data().toString(), QStringLiteral("+14165550134"));
  EXPECT_FALSE(model.index(1, 0, sms).data(Qt::DecorationRole).value<QIcon>().isNull());  // "sent"
  for (NodeId id = 0; static_cast<std::size_t>(id) < ws.tree().size(); ++id) {
    const QModelIndex index = model.IndexOf(id);
    ASSERT_EQ(model.NodeOf(index), id);
    ASSERT_EQ(model.NodeOf(model.parent(index)), ws.tree().Parent(id));
  }
  model.Detach();
  ASSERT_TRUE(Load(SampleBackup()));
  model.Rebuild();
  EXPECT_TRUE(failures.empty()) << failures.front().toStdString();
}

}  // namespace
}  // namespace orchidlamp
