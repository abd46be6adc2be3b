#include "editing/selection_tree.h"

#include <map>

#include "editing_fixture.h"

namespace orchidlamp {
namespace {

using namespace orchidlamp::testing;

class SelectionTreeTest : public EditingTest {
 protected:
  void SetUp() override {
    b.Database("Handheld Agent").Database("Tasks").Database("Memos").Database("SMS Messages");
    b.Add(TaskRecord(1, "t1")).Add(SmsRecord(3, true, 0, 0, {{4, Text("hi")}})).Add(TaskRecord(1, "t2"));
    Open(b.Build());
  }
  static std::string Ticks(const DatabaseTree& tree) {
    std::string out;
    for (NodeId id = 0; id < static_cast<NodeId>(tree.size()); ++id)
      out += std::string(ImageKeyText(tree.Image(id))).substr(0, 1);
    return out;
  }
  IpdBuilder b;
};

TEST_F(SelectionTreeTest, CopiesDepthFirstUntickedAndClicksGoDownAndUp) {
  DatabaseTree sel = LoadSelectionTree(ws.tree());
  // The main tree adds records after all databases; the copy puts each database's records right behind it.
  std::vector<std::string> order;
  for (NodeId id = 0; id < static_cast<NodeId>(sel.size()); ++id)
    order.push_back(sel.Key(id) + "/" + sel.Text(id) + "/" + sel.TagText(id));
  const std::string sms = ws.tree().Text(ws.tree().FindByTag(b.SpanOf(1)));
  EXPECT_EQ(order, (std::vector<std::string>{"Top/" + ws.tree().Text(0) + "/", "0DBTop/Handheld Agent/",
                                             "1DBTop/Tasks/", "/t1/" + b.SpanOf(0), "/t2/" + b.SpanOf(2),
                                             "2DBTop/Memos/", "3DBTop/SMS Messages/", "/" + sms + "/" + b.SpanOf(1)}));
  // Clicks by name: root, agent, tasks, t1, t2, memos, sms, sms record.
  const std::map<std::string, std::string> nodes = {{"root", "Top"},     {"tasks", "1DBTop"},  {"memos", "2DBTop"},
                                                    {"sms", "3DBTop"},   {"t1", b.SpanOf(0)},  {"t2", b.SpanOf(2)}};
  const std::vector<std::pair<std::vector<std::string>, std::string>> rows = {
      {{}, "NNNNNNNN"},                      // the first letter of every node's tick, in collection order
      {{"t1"}, "SNSANNNN"},                  // one record: its database and the root "Some"
      {{"t1", "t2"}, "SNAAANNN"},            // every record: the database "All", the root still "Some"
      {{"t1", "t2", "t1", "t2"}, "NNNNNNNN"},
      {{"tasks"}, "SNAAANNN"},               // down to the records
      {{"tasks", "t2"}, "SNSANNNN"},
      {{"tasks", "t2", "tasks"}, "SNAAANNN"},  // "Some" becomes "All"
      {{"tasks", "tasks"}, "NNNNNNNN"},
      {{"sms"}, "SNNNNNAA"},
      {{"memos"}, "NNNNNNNN"},               // a database without records is never ticked
      {{"root"}, "ANAAANAA"}};
  for (const auto& [clicks, ticks] : rows) {
    sel = LoadSelectionTree(ws.tree());
    for (const std::string& click : clicks) ToggleNodeCheck(sel, sel.FindByKeyOrTag(nodes.at(click)));
    EXPECT_EQ(Ticks(sel), ticks) << ::testing::PrintToString(clicks);
  }
}

TEST(SelectionTreeRoot, IsRecognisedByTextAndOnlyTickImagesCount) {
  DatabaseTree tree;
  const NodeId root = tree.Add(kNoNode, "Top", "Same", ImageKey::TickNone);
  const NodeId db = tree.Add(root, "0DBTop", "Same", ImageKey::TickNone);
  ToggleNodeCheck(tree, tree.Add(db, "", "r", ImageKey::TickNone, RecordSpan{50, 60}));
  // A database named like the root stops the walk up as if it were the root.
  EXPECT_EQ(tree.Image(db), ImageKey::TickAll);
  EXPECT_EQ(tree.Image(root), ImageKey::TickNone);
  // Siblings without a tick image leave the parent as it was.
  const NodeId other = tree.Add(root, "1DBTop", "Other", ImageKey::TickSome);
  UpdateParentCheck(tree, tree.Add(other, "", "s", ImageKey::tasks, RecordSpan{61, 70}));
  EXPECT_EQ(tree.Image(other), ImageKey::TickSome);
}

}  // namespace
}  // namespace orchidlamp
