#include "export/text_export.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <initializer_list>

#include "export/export_panel.h"
#include "export/record_formatters.h"
#include "records/record_kinds.h"
#include "support/ipd_builder.h"
#include "support/temp_folder.h"

namespace orchidlamp {
namespace {

using namespace orchidlamp::testing;

constexpr std::time_t kNow = 1700000000;
const std::string kBanner(71, '*');
const std::string kSeparator(44, '-');

std::string Title(std::size_t blanks, const std::string& text) { return std::string(blanks, ' ') + text; }

// Every print is a line ending in CR LF.
std::string Lines(std::initializer_list<std::string> lines) {
  std::string out;
  for (const std::string& line : lines) out += line + "\r\n";
  return out;
}

std::string Block(std::initializer_list<std::pair<std::string, std::string>> members) {
  std::string out = "\r\n" + kSeparator + "\r\n";
  bool first = true;
  for (const auto& [label, value] : members) {
    if (!first) out += "\r\n";
    first = false;
    out += "\t" + label + value;
  }
  return out;
}

const std::string kBookmarkBlock = Block({{"Name: ", "Hello"}, {"Url: ", "a.b"}});
const std::string kMemoBlock = Block({{"Title: ", "Shop"}, {"Memo: ", "milk"}});
const std::string kTaskBlock =
    Block({{"Task: ", "Pay"}, {"Status: ", "Not Started"}, {"Priority: ", "High"}, {"Notes: ", ""}});
const std::string kSmsBlock = Block({{"Status: ", "Sent"},
                                     {"Sent Date: ", "1970-01-01 03:00:00"},
                                     {"Received Date: ", "1970-01-01 03:00:00"},
                                     {"Number: ", "+1"},
                                     {"Message: ", "Hi"}});
const std::string kAutoTextBlock = Block({{"Replace: ", "teh"}, {"With: ", "the"}});

class TextExportTest : public ::testing::Test {
 protected:
  void SetUp() override {
    IpdBuilder b;
    b.Database("Browser Bookmarks").Database("Memos").Database("Tasks").Database("Service Book");
    b.Database("SMS Messages").Database("AutoText");
    b.Add(Record{0, Body(1, 2, Concat({Hex("0401000548656C6C6F"), Hex("001200"), Hex("03"), Text("a.b")}))});
    b.Add(FieldRecord(1, {{1, Text("Shop")}, {2, Text("milk")}}));
    b.Add(FieldRecord(1, {{2, Text("untitled")}}));
    b.Add(FieldRecord(2, {{2, Text("Pay")}}));
    b.Add(FieldRecord(3, {{3, TextZ("WAP")}}));
    b.Add(SmsRecord(4, true, 0, 0, {{2, Text("+1")}, {4, Text("Hi")}}));
    b.Add(FieldRecord(5, {{1, Text("teh")}, {2, Text("the")}}));
    for (std::size_t i = 0; i < 7; ++i) spans.push_back(b.SpanOf(i));
    ws.folders().output = out.path();
    ws.folders().program = out.path();
    ASSERT_TRUE(ws.Load(in.Write("b.ipd", b.Build()), StoredSettings{"GMT", ";"}));
  }

  void Select(const std::string& tagOrKey) { ws.selected = ws.tree().FindByKeyOrTag(tagOrKey); }

  // Selects, prepares the panel as the export menu does, checks the scope and
  // presses the button; returns the file's text.
  std::string Export(const std::string& tag, ExportScope scope, ExportForm form) {
    Select(tag);
    EXPECT_TRUE(PrepareExport(ws, panel));
    panel.Check(scope);
    return Press(form);
  }

  std::string Press(ExportForm form) {
    auto done = PressExport(ws, panel, form);
    EXPECT_TRUE(done);
    if (!done || !done.value()) return "<nothing>";
    EXPECT_EQ(done.value()->path, Path(form));
    EXPECT_EQ(done.value()->message, (Message{"Export to: " + Path(form) + " is complete.", "", MessageIcon::None}));
    const Bytes bytes = ReadFile(done.value()->path);
    return std::string(bytes.begin(), bytes.end());
  }

  std::string Path(ExportForm form) const {
    return out.path() + "/OL_Export_" + DdHhNnSs(kNow) + (form == ExportForm::Text ? ".txt" : ".csv");
  }

  KindLabeller labeller;
  Workspace ws{labeller, [] { return kNow; }};
  TempFolder in, out;
  ExportPanel panel;
  std::vector<std::string> spans;
};

TEST_F(TextExportTest, PreparingSetsCaptionsByKindAndShowsThePanel) {
  Select(spans[1]);
  ASSERT_TRUE(PrepareExport(ws, panel));
  EXPECT_TRUE(panel.visible);
  EXPECT_EQ(panel.captions[0], "Export Selected Memo");
  EXPECT_EQ(panel.captions[1], "Export All Memos");
  EXPECT_EQ(panel.captions[2], "Export All");
  EXPECT_EQ(panel.optionVisible, (std::array<bool, 3>{true, true, true}));
  Select(spans[6]);
  ASSERT_TRUE(PrepareExport(ws, panel));
  EXPECT_EQ(panel.captions[0], "Export Selected AutoText Word");
  EXPECT_EQ(panel.captions[1], "Export All AutoText Words");
}

TEST_F(TextExportTest, ASelectionThatIsNoExportableRecordIsRefused) {
  for (const std::string& node : {std::string("1DBTop"), std::string("Top"), spans[4]}) {
    ExportPanel fresh;
    Select(node);
    const Status refused = PrepareExport(ws, fresh);
    ASSERT_FALSE(refused) << node;
    EXPECT_EQ(refused.failure().message,
              (Message{"No SMS, Address Book, Tasks, Calendar, Phone Calls, AutoText record selected for export.\r\n"
                       "Please select any single record then hit the export menu.",
                       "Please select record first:", MessageIcon::Exclamation}));
    EXPECT_FALSE(fresh.visible);
    EXPECT_FALSE(fresh.optionVisible[0]);
    EXPECT_FALSE(fresh.optionVisible[1]);
  }
}

TEST_F(TextExportTest, SelectedRecordHasBannerTitleAndOneLine) {
  EXPECT_EQ(Export(spans[1], kScopeRecord, ExportForm::Text),
            Lines({kBanner, Title(27, "Memo"), kBanner, kMemoBlock}));
  // No header row for a single record, and the row uses the setting's delimiter.
  EXPECT_EQ(Export(spans[2], kScopeRecord, ExportForm::Csv), Lines({kBanner, Title(27, "Memo"), kBanner, "1"}));
  EXPECT_EQ(Export(spans[5], kScopeRecord, ExportForm::Csv),
            Lines({kBanner, Title(27, "SMS Message"), kBanner,
                   "\"Sent\";\"1970-01-01 03:00:00\";\"1970-01-01 03:00:00\";\"+1\";\"Hi\""}));
}

TEST_F(TextExportTest, AllOfAKindWithTitlesAndCommaHeaderRows) {
  EXPECT_EQ(Export(spans[1], kScopeKind, ExportForm::Text),
            Lines({kBanner, Title(27, "Memos"), kBanner, kMemoBlock, "1"}));
  EXPECT_EQ(Export(spans[2], kScopeKind, ExportForm::Csv),
            Lines({kBanner, Title(27, "Memos"), kBanner, "Title,Memo", "\"Shop\";\"milk\"", "1"}));
  // AutoText is the one kind whose CSV title differs from its text title.
  EXPECT_EQ(Export(spans[6], kScopeKind, ExportForm::Text),
            Lines({kBanner, Title(27, "AutoText"), kBanner, kAutoTextBlock}));
  EXPECT_EQ(Export(spans[6], kScopeKind, ExportForm::Csv),
            Lines({kBanner, Title(27, "AutoText Words"), kBanner, "Replace,With", "\"teh\";\"the\""}));
}

TEST_F(TextExportTest, BookmarkCaptionsMatchNothingYetTheFileAndMessageAppear) {
  EXPECT_EQ(Export(spans[0], kScopeRecord, ExportForm::Text), "");
  EXPECT_EQ(Export(spans[0], kScopeKind, ExportForm::Csv), "");
}

TEST_F(TextExportTest, WholeTreeIndentsRecordsAndSkipsKindsWithoutFormatter) {
  const std::string expected =
      Lines({kBanner, Title(25, "Browser Bookmarks"), kBanner, "        " + kBookmarkBlock,  //
             kBanner, Title(26, "Memos"), kBanner, "        " + kMemoBlock, "        1",      //
             kBanner, Title(26, "Tasks"), kBanner, "        " + kTaskBlock,                  //
             kBanner, Title(27, "SMS Messages"), kBanner, "        " + kSmsBlock,            //
             kBanner, Title(27, "AutoText"), kBanner, "        " + kAutoTextBlock});
  EXPECT_EQ(Export(spans[3], kScopeTree, ExportForm::Text), expected);
  EXPECT_EQ(ws.exportDepth, -1);
}

TEST_F(TextExportTest, DepthDriftsAcrossExportsOfOneSession) {
  ws.exportDepth = 3;
  (void)Export(spans[1], kScopeTree, ExportForm::Csv);
  EXPECT_EQ(ws.exportDepth, 2);
  EXPECT_EQ(Export(spans[1], kScopeRecord, ExportForm::Text),
            Lines({kBanner, Title(27, "Memo"), kBanner, "        " + kMemoBlock}));
  const std::string tree = Export(spans[1], kScopeTree, ExportForm::Csv);
  EXPECT_NE(tree.find("\r\n                \"Shop\";\"milk\"\r\n"), std::string::npos);  // 4 x (2 + 2)
  EXPECT_EQ(ws.exportDepth, 1);
  ws.exportDepth = -5;
  EXPECT_EQ(Export(spans[3], kScopeRecord, ExportForm::Text), Lines({kBanner, Title(27, "Task"), kBanner, kTaskBlock}));
  (void)Export(spans[3], kScopeTree, ExportForm::Text);
  EXPECT_EQ(ws.exportDepth, -6);
}

TEST_F(TextExportTest, OneRecordFormatsByItsDatabaseTextWithTheWorkspaceSettings) {
  const FormatContext context = FormatContextOf(ws);
  const RecordSpan memo = *RecordSpan::Parse(spans[1]);
  EXPECT_EQ(FormatRecordOf(ws, "Memos", memo, context, true), kMemoBlock);
  EXPECT_EQ(FormatRecordOf(ws, "Memos", memo, context, false), "\"Shop\";\"milk\"");
  EXPECT_EQ(FormatRecordOf(ws, "Service Book", *RecordSpan::Parse(spans[4]), context, true), std::nullopt);
  EXPECT_EQ(FormatRecordOf(ws, "memos", memo, context, true), std::nullopt);
  EXPECT_THROW(FormatRecordOf(ws, "Memos", RecordSpan{1 << 30, 1 << 30}, context, true), CommandError);
}

TEST_F(TextExportTest, NoOptionCheckedDoesNothingAtAll) {
  Select(spans[1]);
  ASSERT_TRUE(PrepareExport(ws, panel));
  auto done = PressExport(ws, panel, ExportForm::Text);
  ASSERT_TRUE(done);
  EXPECT_FALSE(done.value());
  EXPECT_FALSE(FileExists(Path(ExportForm::Text)));
}

TEST_F(TextExportTest, TheHighestCheckedOptionWinsAndTheFileIsTruncated) {
  ASSERT_TRUE(ws.Load(ws.file().path, StoredSettings{}));
  (void)in.Write("big", Bytes(100000, 'x'));
  std::rename(in.File("big").c_str(), Path(ExportForm::Csv).c_str());
  Select(spans[1]);
  ASSERT_TRUE(PrepareExport(ws, panel));
  panel.checked = {true, true, false};
  EXPECT_EQ(Press(ExportForm::Csv), Lines({kBanner, Title(27, "Memos"), kBanner, "Title,Memo", "\"Shop\",\"milk\"", "1"}));
}

TEST_F(TextExportTest, AnOutputFolderThatCannotBeWrittenIsAFailure) {
  ws.folders().output = out.File("missing");
  Select(spans[1]);
  ASSERT_TRUE(PrepareExport(ws, panel));
  panel.Check(kScopeRecord);
  auto done = PressExport(ws, panel, ExportForm::Text);
  ASSERT_FALSE(done);
  EXPECT_NE(done.failure().message.text.find(out.File("missing") + "/OL_Export_"), std::string::npos);
}

TEST_F(TextExportTest, ARecordOutsideTheFileStopsWithAMessageKeepingWhatWasPrinted) {
  const NodeId memos = ws.tree().FindByKey("1DBTop");
  ws.tree().Add(memos, {}, "broken", ImageKey::None, RecordSpan{1 << 30, (1 << 30) + 10});
  Select(spans[1]);
  ASSERT_TRUE(PrepareExport(ws, panel));
  panel.Check(kScopeKind);
  auto done = PressExport(ws, panel, ExportForm::Text);
  ASSERT_FALSE(done);
  EXPECT_FALSE(done.failure().message.text.empty());
  const Bytes written = ReadFile(Path(ExportForm::Text));
  EXPECT_EQ(std::string(written.begin(), written.end()), Lines({kBanner, Title(27, "Memos"), kBanner, kMemoBlock, "1"}));
}

}  // namespace
}  // namespace orchidlamp
