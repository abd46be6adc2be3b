#include "records/record_click.h"

#include <gtest/gtest.h>

#include "records/record_kinds.h"
#include "support/ipd_builder.h"
#include "support/temp_folder.h"

namespace orchidlamp {
namespace {

using namespace orchidlamp::testing;

class ClickTest : public ::testing::Test {
 protected:
  void SetUp() override {
    IpdBuilder b;
    b.Database("Browser Bookmarks").Database("Service Book").Database("Memos").Database("Address Book");
    b.Database("Handheld Agent");
    b.Add(FieldRecord(1, {{3, TextZ("WAP")}, {7, TextZ("U1")}}));
    b.Add(FieldRecord(2, {{1, Text("Shopping")}, {2, Text("milk")}}));
    b.Add(FieldRecord(2, {{1, Text("Other")}}));
    b.Add(FieldRecord(3, {{32, Text("Ann")}, {77, Hex("FFD8FFE00010")}}));
    spans = {b.SpanOf(0), b.SpanOf(1), b.SpanOf(2), b.SpanOf(3)};
    ws.folders().program = folder.path();
    ASSERT_TRUE(ws.Load(folder.Write("c.ipd", b.Build()), StoredSettings{}));
  }
  NodeId Node(const std::string& tagOrKey) const { return ws.tree().FindByKeyOrTag(tagOrKey); }

  KindLabeller labeller;
  Workspace ws{labeller};
  TempFolder folder;
  std::vector<std::string> spans;
};

TEST_F(ClickTest, RecordShowsItsKindsPanelWithMembers) {
  const ClickResult r = ClickNode(ws, Node(spans[1]));
  ASSERT_EQ(r.panel, Kind::Memos);
  ASSERT_EQ(r.members.size(), 2u);
  EXPECT_EQ(r.members[0].name, "MemoTitle");
  EXPECT_EQ(r.members[0].value, "Shopping");
  EXPECT_EQ(r.members[1].value, "milk");
}

TEST_F(ClickTest, ServiceBookFillsTheBoxesAndEnablesTheEditor) {
  ws.hrtnet[0] = "kept";
  const ClickResult r = ClickNode(ws, Node(spans[0]));
  EXPECT_EQ(r.panel, Kind::ServiceBook);
  EXPECT_EQ(ws.hrtnet[17], "WAP");
  EXPECT_EQ(ws.hrtnet[18], "U1");
  EXPECT_EQ(ws.hrtnet[0], "kept");
  EXPECT_TRUE(ws.menus().servicebook);
  ClickNode(ws, Node(spans[1]));
  EXPECT_FALSE(ws.menus().servicebook);
}

TEST_F(ClickTest, NodesWithTwoOrMoreChildrenShowNothing) {
  ClickNode(ws, Node(spans[0]));
  EXPECT_FALSE(ClickNode(ws, Node("2DBTop")).panel);  // two memos
  EXPECT_FALSE(ws.menus().servicebook);
  EXPECT_FALSE(ClickNode(ws, Node("Top")).panel);
  // One record: goes on, but its parent (the root) names no database.
  EXPECT_FALSE(ClickNode(ws, Node("1DBTop")).panel);
  EXPECT_FALSE(ClickNode(ws, Node("4DBTop")).panel);
}

TEST_F(ClickTest, ContactPhotoIsWrittenToTheProgramFolder) {
  const ClickResult r = ClickNode(ws, Node(spans[3]));
  ASSERT_EQ(r.panel, Kind::AddressBook);
  const std::string expected = folder.path() + "/PIC" + spans[3].substr(0, spans[3].find(':')) + ".jpg";
  EXPECT_EQ(r.members.back().name, "PhotoFile");
  EXPECT_EQ(r.members.back().value, expected);
  EXPECT_EQ(ReadFile(expected), Hex("FFD8FFE00010"));
}

}  // namespace
}  // namespace orchidlamp
