#include "editing/service_book_editor.h"

#include <filesystem>

#include "core/hex_text.h"
#include "records/record_click.h"
#include "editing_fixture.h"

namespace orchidlamp {
namespace {

using namespace orchidlamp::testing;

Record ServiceBook(std::uint16_t db, std::string_view name, std::uint16_t handle) {
  return FieldRecord(db,
                     {{0x01, Hex("0A0B")},
                      {0x03, TextZ(name)},
                      {0x06, LE32(7)},
                      {0x07, TextZ(std::string(name) + "-uid")},
                      {0x08, TextZ("CID")},
                      {0x16, FieldList({{0x0A, Hex("03")}, {0x06, LE32(48)}, {0x11, Hex("1F901F91")}})}},
                     handle, 0x100 + handle);
}

const Bytes& Prefix() {
  static const Bytes prefix = HexToBytes(kServiceBookFilePrefixHex);
  return prefix;
}

class EditorTest : public EditingTest {
 protected:
  // Service books at `sbIndex` of the name table: three records, and a task.
  void OpenBooks(std::uint16_t sbIndex) {
    IpdBuilder b;
    for (std::uint16_t i = 0; i < sbIndex; ++i) b.Database(i == 0 ? "Handheld Agent" : "Other " + std::to_string(i));
    b.Database("Service Book").Database("Tasks");
    books = {ServiceBook(sbIndex, "One", 1), ServiceBook(sbIndex, "Two", 2), ServiceBook(sbIndex, "Three", 3)};
    b.Add(books[0]).Add(TaskRecord(sbIndex + 1, "task")).Add(books[1]).Add(books[2]);
    spans = {b.SpanOf(0), b.SpanOf(1), b.SpanOf(2), b.SpanOf(3)};
    Open(b.Build());
    ws.folders().output = folder.path();
  }
  // Selects and clicks a node as the window does before mEdit.
  EditSB Edit(const std::string& span) {
    ws.selected = ws.tree().FindByTag(span);
    (void)ClickNode(ws, ws.selected);
    auto opened = EditSB::Open(ws);
    EXPECT_TRUE(opened && opened.value());
    return opened && opened.value() ? *opened.value() : EditSB{};
  }
  std::string ExpectedPath() const { return folder.path() + "/OL_Export_" + DdHhNnSs(1700000000) + ".ipd"; }

  std::vector<Record> books;
  std::vector<std::string> spans;
};

TEST_F(EditorTest, OpeningNeedsASelectedServiceBookRecord) {
  OpenBooks(1);
  auto none = EditSB::Open(ws);
  ASSERT_FALSE(none);
  EXPECT_EQ(none.failure().message, (Message{"No Service Book record is selected!\r\nPlease select one for edit",
                                             "Please select record first:", MessageIcon::Exclamation}));
  for (NodeId node : {ws.tree().FindByTag(spans[1]), ws.tree().Root(), ws.tree().FindByKey("1DBTop")}) {
    ws.selected = node;
    auto refused = EditSB::Open(ws);
    ASSERT_TRUE(refused);
    EXPECT_FALSE(refused.value().has_value());
  }

  const EditSB editor = Edit(spans[2]);
  EXPECT_EQ(editor.code(), BytesToHex(RecordBytes(books[1])));
  EXPECT_EQ(editor.heading(), "Edit the *Two* service book");
  EXPECT_EQ(editor.hrtnet, ws.hrtnet);
  EXPECT_EQ(editor.hrtnet[17], "Two");
  EXPECT_EQ(editor.hrtnet[0], "48");
}

TEST_F(EditorTest, SaveWritesThePrefixAndTheRebuiltRecordBesideTheBackup) {
  OpenBooks(1);
  EditSB editor = Edit(spans[0]);
  editor.hrtnet[17] = "Renamed";
  auto saved = editor.Save(ws);
  ASSERT_TRUE(saved) << saved.failure().message.text;
  EXPECT_EQ(saved->path, ExpectedPath());
  EXPECT_EQ(saved->messages,
            (std::vector<Message>{{"File saved as " + ExpectedPath(), "", MessageIcon::Information}}));
  Bytes expected = Prefix();
  const Bytes record = HexToBytes(editor.BuildRecord().hex);
  expected.insert(expected.end(), record.begin(), record.end());
  EXPECT_EQ(ReadFile(saved->path), expected);
  EXPECT_EQ(ReadBack(saved->path), (std::vector<std::string>{"Service Book|Renamed"}));

  // Reading it back shows the same boxes the editor held.
  Workspace reader(labeller);
  ASSERT_TRUE(reader.Load(saved->path, StoredSettings{}));
  (void)ClickNode(reader, reader.tree().FindByKey("0DBTop") + 1);
  EXPECT_EQ(reader.hrtnet, editor.hrtnet);
}

TEST_F(EditorTest, SaveAllKeepsTheOtherRecordsByteForByte) {
  OpenBooks(0);
  EditSB editor = Edit(spans[2]);
  editor.hrtnet[17] = "Second";
  auto saved = editor.SaveAll(ws);
  ASSERT_TRUE(saved) << saved.failure().message.text;
  const Bytes rebuilt = HexToBytes(editor.BuildRecord().hex);
  EXPECT_EQ(ReadFile(saved->path), Concat({Prefix(), RecordBytes(books[0]), rebuilt, RecordBytes(books[2])}));
  EXPECT_EQ(ReadBack(saved->path), (std::vector<std::string>{"Service Book|One|Second|Three"}));
}

TEST_F(EditorTest, SaveAllCopiesTheOthersWithTheirOwnDatabaseId) {
  OpenBooks(2);
  EditSB editor = Edit(spans[0]);
  auto saved = editor.SaveAll(ws);
  ASSERT_TRUE(saved);
  const Bytes rebuilt = HexToBytes(editor.BuildRecord().hex);
  EXPECT_EQ(ReadFile(saved->path), Concat({Prefix(), rebuilt, RecordBytes(books[1]), RecordBytes(books[2])}));
  // The file declares one database: records still carrying id 2 belong to none.
  EXPECT_EQ(ReadBack(saved->path), (std::vector<std::string>{"Service Book|One"}));
}

TEST_F(EditorTest, ABlankNameStillWritesTheFileWithoutTheRecord) {
  OpenBooks(0);
  EditSB editor = Edit(spans[0]);
  editor.hrtnet[19] = "";
  auto saved = editor.SaveAll(ws);
  ASSERT_TRUE(saved);
  ASSERT_EQ(saved->messages.size(), 2u);
  EXPECT_EQ(saved->messages[0].icon, MessageIcon::Critical);
  EXPECT_EQ(saved->messages[1].text, "File saved as " + saved->path);
  EXPECT_EQ(ReadFile(saved->path), Concat({Prefix(), RecordBytes(books[1]), RecordBytes(books[2])}));

  auto single = editor.Save(ws);
  ASSERT_TRUE(single);
  // Same name within the same second: written over, from offset 0, not truncated.
  const Bytes written = ReadFile(single->path);
  EXPECT_TRUE(std::equal(Prefix().begin(), Prefix().end(), written.begin()));
  EXPECT_GT(written.size(), Prefix().size());
}

TEST_F(EditorTest, FailuresWriteNothing) {
  OpenBooks(0);
  EditSB editor = Edit(spans[0]);
  editor.hrtnet[20] = "seven";
  auto notNumber = editor.Save(ws);
  ASSERT_FALSE(notNumber);
  EXPECT_NE(notNumber.failure().message.text.find("hrtnet(20)"), std::string::npos);
  EXPECT_FALSE(editor.SaveAll(ws));
  EXPECT_FALSE(FileExists(ExpectedPath()));

  editor.hrtnet[20] = "7";
  ws.folders().output = folder.File("gone");
  EXPECT_FALSE(editor.Save(ws));
  ws.selected = kNoNode;
  ws.folders().output = folder.path();
  EXPECT_FALSE(editor.SaveAll(ws));
  EXPECT_FALSE(FileExists(ExpectedPath()));
}

}  // namespace
}  // namespace orchidlamp
