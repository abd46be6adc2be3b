#include "editing/service_book_editor.h"

#include "core/hex_text.h"
#include "records/record_click.h"
#include "editing_fixture.h"

namespace orchidlamp {
namespace {

using namespace orchidlamp::testing;

Record Book(std::uint16_t db, std::string_view name, std::uint16_t handle) {
  return FieldRecord(db, {{0x03, TextZ(name)}, {0x06, LE32(7)}, {0x07, TextZ("U")}, {0x08, TextZ("C")},
                          {0x16, FieldList({{0x0A, Hex("03")}, {0x06, LE32(48)}})}},
                     handle, 0x100 + handle);
}

class EditorTest : public EditingTest {
 protected:
  // Three service books at `index` of the name table, with a task among them.
  void OpenBooks(std::uint16_t index) {
    IpdBuilder b;
    for (std::uint16_t i = 0; i < index; ++i) b.Database("Other " + std::to_string(i));
    b.Database("Service Book").Database("Tasks");
    b.Add(books[0] = Book(index, "One", 1)).Add(TaskRecord(index + 1, "task"));
    b.Add(books[1] = Book(index, "Two", 2)).Add(books[2] = Book(index, "Three", 3));
    spans = {b.SpanOf(0), b.SpanOf(1), b.SpanOf(2), b.SpanOf(3)};
    Open(b.Build());
    ws.folders().output = folder.path();
  }
  // Selects and clicks a node as the window does before opening the editor.
  Result<std::optional<EditSB>> Edit(NodeId node) {
    ws.selected = node;
    if (node != kNoNode) (void)ClickNode(ws, node);
    return EditSB::Open(ws);
  }
  Bytes Rebuilt(const EditSB& editor) const { return HexToBytes(editor.BuildRecord().hex); }
  std::string Path() const { return folder.path() + "/OL_Export_" + DdHhNnSs(1700000000) + ".ipd"; }

  Record books[3];
  std::vector<std::string> spans;
  const Bytes prefix = HexToBytes(kServiceBookFilePrefixHex);
};

TEST_F(EditorTest, OpensOnlyOnASelectedServiceBookRecordWithThePanelsValues) {
  OpenBooks(1);
  EXPECT_EQ(Edit(kNoNode).failure().message,
            (Message{"No Service Book record is selected!\r\nPlease select one for edit", "Please select record first:",
                     MessageIcon::Exclamation}));
  for (NodeId node : {ws.tree().FindByTag(spans[1]), ws.tree().Root(), ws.tree().FindByKey("1DBTop")})
    EXPECT_FALSE(Edit(node).value().has_value());  // nothing shown
  const EditSB editor = *Edit(ws.tree().FindByTag(spans[2])).value();
  EXPECT_EQ(editor.code() + editor.heading(), BytesToHex(RecordBytes(books[1])) + "Edit the *Two* service book");
  EXPECT_EQ(editor.hrtnet, ws.hrtnet);
  EXPECT_EQ(editor.hrtnet[17] + "/" + editor.hrtnet[0], "Two/48");
}

TEST_F(EditorTest, SaveWritesTheRebuiltRecordAndSaveAllTheOthersByteForByteWithTheirOwnIds) {
  OpenBooks(2);
  EditSB editor = *Edit(ws.tree().FindByTag(spans[0])).value();
  editor.hrtnet[17] = "Renamed";
  auto saved = editor.Save(ws);
  ASSERT_TRUE(saved) << saved.failure().message.text;
  EXPECT_EQ(saved->messages, (std::vector<Message>{{"File saved as " + Path(), "", MessageIcon::Information}}));
  EXPECT_EQ(ReadFile(Path()), Concat({prefix, Rebuilt(editor)}));
  EXPECT_EQ(ReadBack(Path()), std::vector<std::string>{"Service Book|Renamed"});
  std::remove(Path().c_str());
  // The others keep database id 2, which the one-database file does not list.
  ASSERT_TRUE(editor.SaveAll(ws));
  EXPECT_EQ(ReadFile(Path()), Concat({prefix, Rebuilt(editor), RecordBytes(books[1]), RecordBytes(books[2])}));
  EXPECT_EQ(ReadBack(Path()), std::vector<std::string>{"Service Book|Renamed"});
}

TEST_F(EditorTest, ABlankNameStillWritesTheFileWithoutTheRecordAndFailuresWriteNothing) {
  OpenBooks(0);
  EditSB editor = *Edit(ws.tree().FindByTag(spans[0])).value();
  editor.hrtnet[19] = "";
  auto saved = editor.SaveAll(ws);
  ASSERT_TRUE(saved);
  EXPECT_EQ(saved->messages.size(), 2u);
  EXPECT_EQ(saved->messages[0].icon, MessageIcon::Critical);
  EXPECT_EQ(ReadFile(Path()), Concat({prefix, RecordBytes(books[1]), RecordBytes(books[2])}));
  ASSERT_TRUE(editor.Save(ws));  // the same name within one second: written over from offset 0, not truncated
  EXPECT_EQ(ReadFile(Path()), Concat({prefix, RecordBytes(books[1]), RecordBytes(books[2])}));
  std::remove(Path().c_str());

  editor.hrtnet[19] = "C", editor.hrtnet[20] = "seven";
  EXPECT_NE(editor.Save(ws).failure().message.text.find("hrtnet(20)"), std::string::npos);
  EXPECT_FALSE(editor.SaveAll(ws));
  editor.hrtnet[20] = "7";
  ws.folders().output = folder.File("gone");
  EXPECT_FALSE(editor.Save(ws));
  ws.selected = kNoNode;
  ws.folders().output = folder.path();
  EXPECT_FALSE(editor.SaveAll(ws));
  EXPECT_FALSE(FileExists(Path()));
}

}  // namespace
}  // namespace orchidlamp
