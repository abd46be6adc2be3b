#include "records/record_click.h"

#include <gtest/gtest.h>

#include "support/ipd_builder.h"
#include "support/temp_folder.h"

namespace orchidlamp {
namespace {

using namespace orchidlamp::testing;

std::string Shown(const Member& m) { return std::string(m.name) + "=" + m.value; }

class ClickTest : public ::testing::Test {
 protected:
  void SetUp() override {
    IpdBuilder b;
    b.Database("Browser Bookmarks").Database("Service Book").Database("Memos").Database("Address Book");
    b.Database("memos");  // names match case by case: no kind
    b.Add(FieldRecord(1, {{3, TextZ("WAP")}, {7, TextZ("U1")}}));
    b.Add(FieldRecord(2, {{1, Text("Shopping")}, {2, Text("milk")}}));
    b.Add(FieldRecord(2, {{1, Text("Other")}}));
    b.Add(FieldRecord(3, {{32, Text("Ann")}, {77, Hex("FFD8FFE00010")}}));
    b.Add(FieldRecord(3, {{32, Text("Bo")}, {77, Hex("FFD8E0")}}));  // no JPEG
    b.Add(FieldRecord(4, {{1, Text("lower")}}));
    for (std::size_t i = 0; i < 6; ++i) spans.push_back(b.SpanOf(i));
    ws.folders().program = folder.path();
    ASSERT_TRUE(ws.Load(folder.Write("c.ipd", b.Build()), StoredSettings{}));
  }
  ClickResult Click(const std::string& tagOrKey) { return ClickNode(ws, ws.tree().FindByKeyOrTag(tagOrKey)); }
  std::string PicturePath(std::size_t record) const {
    return folder.path() + "/PIC" + spans[record].substr(0, spans[record].find(':')) + ".jpg";
  }

  KindLabeller labeller;
  Workspace ws{labeller};
  TempFolder folder;
  std::vector<std::string> spans;
};

TEST_F(ClickTest, RecordShowsItsKindsPanelWithNamedMembers) {
  const ClickResult r = Click(spans[1]);
  ASSERT_EQ(r.panel, Kind::Memos);
  ASSERT_EQ(r.members.size(), 2u);
  EXPECT_EQ(Shown(r.members[0]) + " " + Shown(r.members[1]), "MemoTitle=Shopping MemoText=milk");
}

TEST_F(ClickTest, ServiceBookFillsTheBoxesAndEnablesTheEditorUntilAnotherClick) {
  ws.hrtnet[0] = "kept";
  EXPECT_EQ(Click(spans[0]).panel, Kind::ServiceBook);
  EXPECT_EQ(ws.hrtnet[0] + " " + ws.hrtnet[17] + " " + ws.hrtnet[18], "kept WAP U1");
  EXPECT_TRUE(ws.menus().servicebook);
  Click(spans[1]);
  EXPECT_FALSE(ws.menus().servicebook);
  Click(spans[0]);
  // Two or more children show nothing; one goes on, but its parent (the root) names no database; nor does "memos".
  for (const std::string& node : std::vector<std::string>{"2DBTop", "Top", "1DBTop", "4DBTop", spans[5]})
    EXPECT_FALSE(Click(node).panel) << node;
  EXPECT_FALSE(ws.menus().servicebook);
}

TEST_F(ClickTest, OnlyAJpegContactPhotoIsWrittenToTheProgramFolderUnderItsOffset) {
  const ClickResult r = Click(spans[3]);
  ASSERT_EQ(r.panel, Kind::AddressBook);
  EXPECT_EQ(Shown(r.members.back()), "PhotoFile=" + PicturePath(3));
  EXPECT_EQ(ReadFile(PicturePath(3)), Hex("FFD8FFE00010"));
  EXPECT_EQ(Click(spans[4]).members.back().value, "");
  EXPECT_FALSE(FileExists(PicturePath(4)));
}

}  // namespace
}  // namespace orchidlamp
