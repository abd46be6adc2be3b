#include "editing/selection_tree.h"

#include "editing_fixture.h"

namespace orchidlamp {
namespace {

using namespace orchidlamp::testing;

std::string Ticks(const DatabaseTree& tree) {
  std::string out;
  for (const TreeNode& n : tree.nodes()) out += std::string(ImageKeyText(n.image)).substr(0, 1);
  return out;
}

class SelectionTreeTest : public EditingTest {
 protected:
  void SetUp() override {
    IpdBuilder b;
    b.Database("Handheld Agent").Database("Tasks").Database("Memos").Database("SMS Messages");
    b.Add(TaskRecord(1, "t1")).Add(SmsRecord(3, true, 0, 0, {{4, Text("hi")}})).Add(TaskRecord(1, "t2"));
    Open(b.Build());
    sel = LoadSelectionTree(ws.tree());
    spans = {b.SpanOf(0), b.SpanOf(1), b.SpanOf(2)};
    task1 = sel.FindByTag(b.SpanOf(0));
    task2 = sel.FindByTag(b.SpanOf(2));
    tasks = Db(sel, 1);
  }
  DatabaseTree sel;
  std::vector<std::string> spans;
  NodeId task1 = kNoNode, task2 = kNoNode, tasks = kNoNode;
};

TEST_F(SelectionTreeTest, CopiesDepthFirstWithKeysTextsTagsAndEveryNodeUnticked) {
  // The main tree adds records after all databases; the copy puts each
  // database's records right behind it.
  std::vector<std::string> order;
  for (const TreeNode& n : sel.nodes()) order.push_back(n.key + "/" + n.text + "/" + n.TagText());
  EXPECT_EQ(order, (std::vector<std::string>{"Top/" + ws.tree()[0].text + "/", "0DBTop/Handheld Agent/",
                                             "1DBTop/Tasks/", "/t1/" + spans[0], "/t2/" + spans[2], "2DBTop/Memos/",
                                             "3DBTop/SMS Messages/",
                                             "/" + ws.tree()[ws.tree().FindByTag(spans[1])].text + "/" + spans[1]}));
  EXPECT_EQ(Ticks(sel), "NNNNNNNN");
}

TEST_F(SelectionTreeTest, OneRecordMakesItsDatabaseSomeAndAllRecordsMakeItAll) {
  ToggleNodeCheck(sel, task1);
  EXPECT_EQ(sel[task1].image, ImageKey::TickAll);
  EXPECT_EQ(sel[tasks].image, ImageKey::TickSome);
  EXPECT_EQ(sel[sel.Root()].image, ImageKey::TickSome);

  ToggleNodeCheck(sel, task2);
  EXPECT_EQ(sel[tasks].image, ImageKey::TickAll);
  // The root's other children are "None": it stays "Some".
  EXPECT_EQ(sel[sel.Root()].image, ImageKey::TickSome);

  ToggleNodeCheck(sel, task1);
  ToggleNodeCheck(sel, task2);
  EXPECT_EQ(Ticks(sel), "NNNNNNNN");
}

TEST_F(SelectionTreeTest, ADatabaseTickGoesDownToItsRecordsAndBack) {
  ToggleNodeCheck(sel, tasks);
  EXPECT_EQ(sel[task1].image, ImageKey::TickAll);
  EXPECT_EQ(sel[task2].image, ImageKey::TickAll);
  ToggleNodeCheck(sel, task2);  // a "Some" database toggles to "All" again
  EXPECT_EQ(sel[tasks].image, ImageKey::TickSome);
  ToggleNodeCheck(sel, tasks);
  EXPECT_EQ(Ticks(sel), "SNAAANNN");  // root, agent, tasks, t1, t2, memos, sms, sms record
  ToggleNodeCheck(sel, tasks);
  EXPECT_EQ(Ticks(sel), "NNNNNNNN");
  ToggleNodeCheck(sel, Db(sel, 3));
  EXPECT_EQ(Ticks(sel), "SNNNNNAA");
}

TEST_F(SelectionTreeTest, ADatabaseWithoutRecordsIsNeverTicked) {
  const NodeId memos = Db(sel, 2);
  ToggleNodeCheck(sel, memos);
  EXPECT_EQ(sel[memos].image, ImageKey::TickNone);
  ToggleNodeCheck(sel, memos);
  EXPECT_EQ(sel[memos].image, ImageKey::TickNone);
  // Ticking the root ticks every database but those.
  ToggleNodeCheck(sel, sel.Root());
  EXPECT_EQ(Ticks(sel), "ANAAANAA");
}

TEST(SelectionTreeRoot, IsRecognisedByTextSoADatabaseNamedLikeItStopsTheWalk) {
  DatabaseTree tree;
  const NodeId root = tree.Add(kNoNode, "Top", "Same", ImageKey::TickNone);
  const NodeId db = tree.Add(root, "0DBTop", "Same", ImageKey::TickNone);
  const NodeId rec = tree.Add(db, "", "r", ImageKey::TickNone, RecordSpan{50, 60});
  ToggleNodeCheck(tree, rec);
  EXPECT_EQ(tree[db].image, ImageKey::TickAll);
  EXPECT_EQ(tree[root].image, ImageKey::TickNone);
}

TEST(SelectionTreeRoot, SiblingsWithoutATickImageLeaveTheParentAsItWas) {
  DatabaseTree tree;
  const NodeId root = tree.Add(kNoNode, "Top", "root", ImageKey::TickNone);
  const NodeId db = tree.Add(root, "0DBTop", "db", ImageKey::TickSome);
  const NodeId rec = tree.Add(db, "", "r", ImageKey::tasks, RecordSpan{50, 60});
  UpdateParentCheck(tree, rec);
  EXPECT_EQ(tree[db].image, ImageKey::TickSome);
}

}  // namespace
}  // namespace orchidlamp
