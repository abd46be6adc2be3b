#include "export/text_export.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <map>

#include "core/time_stamp.h"
#include "export/export_panel.h"
#include "export/record_formatters.h"
#include "generators/tiny_images.h"
#include "records/record_kinds.h"
#include "support/ipd_builder.h"
#include "support/temp_folder.h"

namespace orchidlamp {
namespace {

using namespace orchidlamp::testing;

constexpr std::time_t kNow = 1700000000;
const std::string kBanner(71, '*');

std::string FileText(const std::string& path) {
  const Bytes bytes = ReadFile(path);
  return std::string(bytes.begin(), bytes.end());
}
std::string Golden(const std::string& name) { return FileText(std::string(ORCHIDLAMP_EXPORT_DATA) + "/" + name); }
std::string Titled(const std::string& title) {
  return kBanner + "\r\n" + std::string(27, ' ') + title + "\r\n" + kBanner + "\r\n";
}
Bytes Nested(const Bytes& skipped, const std::vector<testing::Field>& inner) {
  return FieldList({{10, Concat({skipped, FieldList(inner)})}});
}

// One database of every kind, in kind order, with records that are written and
// records that are skipped; values hold the delimiter, quotes and line breaks.
class TextExportTest : public ::testing::Test {
 protected:
  void SetUp() override {
    for (int k = 0; k < kKindCount; ++k) b.Database(std::string(InfoOf(static_cast<Kind>(k)).name));
    Add("bookmark", {0, Body(1, 2, Concat({Hex("0401000548656C6C6F"), Hex("001200"), Hex("03"), Text("a.b")}))});
    Add("bookmark without url", {0, Body(1, 2, Hex("0401000341424300120000"))});
    Add("autotext", FieldRecord(1, {{1, Text("teh")}, {2, Text("the")}}));
    Add("autotext without replace", FieldRecord(1, {{2, Text("with only")}}));
    Add("sms", SmsRecord(2, false, 0, 86400000, {{2, Text("+441")}, {4, Text("Hi;\r\n\"you\"")}}));
    Add("sms without number", SmsRecord(2, true, 0, 0, {{4, Text("no number")}}));
    Add("nested contact", {3, Body(1, 2, Nested({}, {{32, Text("In")}, {77, TinyJpeg()}}))});
    Add("contact", FieldRecord(4, {{32, Text("Ann")}, {32, Text("Lee")}, {18, Text("other")}, {10, Text("2A3B")},
                                   {99, Text("x99")}, {64, Text("n\r\n2")}, {1, Text("a@b")}, {82, Text("1 May")},
                                   {61, Text("home")}, {35, Text("work")}}));
    Add("contact with a wide first name", FieldRecord(4, {{160, Concat({Hex("00"), Utf16(u"Bo")})}}));
    Add("nested contact read flat", {4, Body(1, 2, Nested({}, {{32, Text("In")}}))});
    Add("memo", FieldRecord(5, {{1, Text("Shop")}, {2, Text("milk\r\neggs")}}));
    Add("memo without title", FieldRecord(5, {{2, Text("untitled")}}));
    Add("task", FieldRecord(6, {{2, Text("Pay")}, {9, Hex("01")}, {10, Hex("02")}, {3, Text("a\"b;c")}}));
    Add("nested appointment", {7, Body(1, 2, Nested(Hex("01020304"), {{2, Text("Meet")}}))});
    Add("appointment", FieldRecord(8, {{2, Text("Lunch")}, {3, Text("Cafe")}, {6, Hex("A0050000")},
                                       {7, Hex("3C000000")}, {4, Text("bring\r\nit")}}));
    Add("nested appointment read flat", {8, Body(1, 2, Nested(Hex("01020304"), {{2, Text("Meet")}}))});
    Add("service book", FieldRecord(9, {{3, TextZ("WAP")}}));
    Add("call", FieldRecord(10, {{2, LE32(1)}, {3, LE32(65)}, {4, LE64(0)}, {6, Hex("01")}, {12, Text("555")},
                                 {31, Text("Bo")}}));
    Add("call with a number only", FieldRecord(10, {{12, Text("5")}}));
    Add("call without name or number", FieldRecord(10, {{3, LE32(5)}}));
    ws.folders().output = out.path();
    ws.folders().program = out.path();
    ASSERT_TRUE(ws.Load(in.Write("b.ipd", b.Build()), StoredSettings{"GMT", ";"}));
  }
  void Add(const std::string& name, const Record& r) {
    b.Add(r);
    spans[name] = b.SpanOf(spans.size());
  }
  void Select(const std::string& tagOrKey) { ws.selected = ws.tree().FindByKeyOrTag(tagOrKey); }

  // The export menu on the record, the scope's option, the button: the file's text.
  std::string Export(const std::string& record, ExportScope scope, ExportForm form) {
    Select(spans.at(record));
    EXPECT_TRUE(PrepareExport(ws, panel));
    panel.Check(scope);
    return Press(form);
  }
  std::string Press(ExportForm form) {
    auto done = PressExport(ws, panel, form);
    const Message complete{"Export to: " + Path(form) + " is complete.", "", MessageIcon::None};
    EXPECT_TRUE(done && done.value() && done.value()->path == Path(form) && done.value()->message == complete);
    return FileText(Path(form));
  }
  std::string Path(ExportForm form) const {
    return out.path() + "/OL_Export_" + DdHhNnSs(kNow) + (form == ExportForm::Text ? ".txt" : ".csv");
  }

  IpdBuilder b;
  std::map<std::string, std::string> spans;
  KindLabeller labeller;
  Workspace ws{labeller, [] { return kNow; }};
  TempFolder in, out;
  ExportPanel panel;
};

TEST_F(TextExportTest, WholeTreeOfEveryKindMatchesTheKnownFilesAndTheDepthDrifts) {
  EXPECT_EQ(Export("memo", kScopeTree, ExportForm::Text), Golden("every_kind.txt"));
  EXPECT_EQ(ws.exportDepth, -1);
  ws.exportDepth = 0;
  EXPECT_EQ(Export("memo", kScopeTree, ExportForm::Csv), Golden("every_kind.csv"));
  // The nested contact's photo, numbered by its record's first offset.
  const std::string& span = spans.at("nested contact");
  EXPECT_EQ(ReadFile(out.path() + "/PIC" + span.substr(0, span.find(':')) + ".jpg"), TinyJpeg());

  // Each whole-tree export leaves the depth one lower; later exports of the session indent by it.
  ws.exportDepth = 3;
  (void)Export("memo", kScopeTree, ExportForm::Csv);
  EXPECT_EQ(ws.exportDepth, 2);
  EXPECT_EQ(Export("memo without title", kScopeRecord, ExportForm::Csv), Titled("Memo") + "        1\r\n");
  EXPECT_NE(Export("memo", kScopeTree, ExportForm::Csv).find("\r\n                \"Shop\";"), std::string::npos);
  EXPECT_EQ(ws.exportDepth, 1);
  ws.exportDepth = -5;
  EXPECT_EQ(Export("memo without title", kScopeRecord, ExportForm::Text), Titled("Memo") + "1\r\n");
  (void)Export("memo", kScopeTree, ExportForm::Text);
  EXPECT_EQ(ws.exportDepth, -6);
}

// Per kind: the panel's captions, then the selected record, all of its kind as
// text and as CSV (under a comma header whatever the delimiter). Bookmark
// captions match no scope: their files are empty, the message appears.
TEST_F(TextExportTest, ScopesOfEachKindMatchTheKnownFile) {
  std::string all;
  for (const char* record : {"bookmark", "autotext", "sms", "nested contact", "contact", "memo", "task",
                             "nested appointment", "appointment", "call"}) {
    const std::string selected = Export(record, kScopeRecord, ExportForm::Text);
    EXPECT_TRUE(panel.visible && panel.optionVisible == (std::array<bool, 3>{true, true, true}));
    all += "== " + panel.captions[0] + " | " + panel.captions[1] + " | " + panel.captions[2] + "\r\n" + selected;
    all += Export(record, kScopeKind, ExportForm::Text) + Export(record, kScopeKind, ExportForm::Csv);
  }
  EXPECT_EQ(all, Golden("every_kind_scopes.txt"));
  EXPECT_EQ(ws.exportDepth, 0);
}

TEST_F(TextExportTest, ARefusedSelectionNoOptionCheckedAndTheHighestCheckedOption) {
  const Message refusal{"No SMS, Address Book, Tasks, Calendar, Phone Calls, AutoText record selected for export.\r\n"
                        "Please select any single record then hit the export menu.",
                        "Please select record first:", MessageIcon::Exclamation};
  for (const std::string& node : {std::string("1DBTop"), std::string("Top"), spans.at("service book")}) {
    ExportPanel fresh;
    Select(node);
    const Status refused = PrepareExport(ws, fresh);
    EXPECT_TRUE(!refused && refused.failure().message == refusal) << node;
    EXPECT_FALSE(fresh.visible || fresh.optionVisible[0] || fresh.optionVisible[1]);
  }
  Select(spans.at("memo"));
  ASSERT_TRUE(PrepareExport(ws, panel));
  auto done = PressExport(ws, panel, ExportForm::Text);
  EXPECT_TRUE(done && !done.value() && !FileExists(Path(ExportForm::Text)));
  // The file is truncated, and the CSV rows follow the delimiter setting.
  ASSERT_TRUE(ws.Load(ws.file().path, StoredSettings{}));
  std::rename(in.Write("big", Bytes(100000, 'x')).c_str(), Path(ExportForm::Csv).c_str());
  Select(spans.at("memo"));
  ASSERT_TRUE(PrepareExport(ws, panel));
  panel.checked = {true, true, false};
  EXPECT_EQ(Press(ExportForm::Csv), Titled("Memos") + "Title,Memo\r\n\"Shop\",\"milk\r\neggs\"\r\n1\r\n");
}
TEST_F(TextExportTest, FailuresKeepWhatWasPrinted) {
  // A record outside the file stops the walk with a message.
  ws.tree().Add(ws.tree().FindByKey("5DBTop"), {}, "broken", ImageKey::None, RecordSpan{1 << 30, (1 << 30) + 10});
  Select(spans.at("memo"));
  ASSERT_TRUE(PrepareExport(ws, panel));
  panel.Check(kScopeKind);
  auto done = PressExport(ws, panel, ExportForm::Text);
  ASSERT_FALSE(done);
  EXPECT_FALSE(done.failure().message.text.empty());
  EXPECT_EQ(FileText(Path(ExportForm::Text)).rfind(Titled("Memos") + "\r\n---", 0), 0u);
  // A folder that cannot be written is a failure naming the file.
  ws.folders().output = out.File("missing");
  done = PressExport(ws, panel, ExportForm::Text);
  ASSERT_FALSE(done);
  EXPECT_NE(done.failure().message.text.find(out.File("missing") + "/OL_Export_"), std::string::npos);
}

}  // namespace
}  // namespace orchidlamp
