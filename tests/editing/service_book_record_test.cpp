#include "editing/service_book_record.h"

#include <gtest/gtest.h>

#include "core/hex_text.h"
#include "records/service_book_panel.h"
#include "support/ipd_builder.h"

namespace orchidlamp {
namespace {

using namespace orchidlamp::testing;

// A service-book record as the device writes it, as the editor's `code` holds it.
std::string SourceCode(bool with0x17 = true) {
  std::vector<Field> fields = {{0x01, Hex("0A0B")}, {0x02, Hex("01")}};
  if (with0x17) fields.push_back({0x17, Hex("5D708BC7")});
  const std::vector<Field> more = {
      {0x03, TextZ("Old name")}, {0x05, Hex("0012")},     {0x06, Hex("FFFFFFFF")},
      {0x07, TextZ("UID1")},     {0x08, TextZ("CID1")},   {0x09, Hex("02000501686F737400")},
      {0x0F, TextZ("old desc")}, {0x10, Hex("77")},       {0x11, Hex("0304")},
      {0x12, Hex("0000")},       {0x18, Hex("1366084A")}, {0x16, FieldList({{0x0A, Hex("03")}, {0x09, Text("HRT")}})}};
  fields.insert(fields.end(), more.begin(), more.end());
  return BytesToHex(RecordBytes(FieldRecord(4, fields, 0x0102, 0xA1B2C3D4)));
}

EditorValues Required() {
  EditorValues v{};
  v[17] = "Name";
  v[18] = "UID";
  v[19] = "CID";
  return v;
}

// The built record's fields as "TT:data" (hex), in order.
std::vector<std::string> Fields(const std::string& record) {
  std::vector<std::string> out;
  const Bytes bytes = HexToBytes(record);
  for (std::size_t p = 13; p + 3 <= bytes.size();) {
    const std::size_t length = bytes[p] | (bytes[p + 1] << 8);
    out.push_back(ByteToHex(bytes[p + 2]) + ":" + BytesToHex(ByteView(bytes).subspan(p + 3, length)));
    p += 3 + length;
  }
  return out;
}

std::string FieldOf(const std::string& record, std::string_view type) {
  for (const std::string& f : Fields(record))
    if (f.compare(0, 2, type) == 0) return f.substr(3);
  return "absent";
}

TEST(ServiceBookRecord, KeepsHeaderAndCopiedFieldsAndWritesTheValuesInOrder) {
  EditorValues v = Required();
  v[20] = "-1";
  v[21] = "desc";
  const BuiltRecord built = BuildRecord(SourceCode(), v);
  ASSERT_FALSE(built.refusal);
  const std::string empty09 = "0200010100000103000001040000010900000" "10A0000010B00";
  const std::string fields = "020001" "0A0B" "010002" "01" "040017" "5D708BC7" "020005" "0012" +
                             MakeStringField("Name", "03", true) + MakeStringField("UID", "07", true) +
                             MakeStringField("CID", "08", true) + "040006FFFFFFFF" +
                             MakeStringField("desc", "0F", true) + "190009" + empty09 + "010010" "77" "020011" "0304" +
                             "020012" "0000" "040018" "1366084A";
  // Database id 0, the 16-bit length, "0000", then version, handle and uid of the source.
  const std::size_t length = 7 + fields.size() / 2;
  EXPECT_EQ(built.hex, "0000" + ByteToHex(length) + ByteToHex(length >> 8) + "0000" + "00" "0201" "D4C3B2A1" + fields);
}

TEST(ServiceBookRecord, UserIdKeepsOnlyItsLowByteUnlessItIsMinusOne) {
  EditorValues v = Required();
  v[20] = "-1";
  EXPECT_EQ(FieldOf(BuildRecord(SourceCode(), v).hex, "06"), "FFFFFFFF");
  v[20] = "5";
  EXPECT_EQ(FieldOf(BuildRecord(SourceCode(), v).hex, "06"), "05");
  v[20] = "300";
  EXPECT_EQ(FieldOf(BuildRecord(SourceCode(), v).hex, "06"), "2C");
  v[20] = "";
  EXPECT_EQ(FieldOf(BuildRecord(SourceCode(), v).hex, "06"), "absent");
  v[20] = "five";
  EXPECT_THROW(BuildRecord(SourceCode(), v), CommandError);
  v[20] = "5x";
  EXPECT_THROW(BuildRecord(SourceCode(), v), CommandError);
}

TEST(ServiceBookRecord, StringFieldsAndTheEmptyConnectionField) {
  EXPECT_EQ(MakeStringField("ABC", "03", true), "04000341424300");
  EXPECT_EQ(MakeStringField("ABC", "09", false), "030009414243");
  EXPECT_EQ(MakeStringField("", "0F", true), "01000F00");
  const std::string record = BuildRecord(SourceCode(), Required()).hex;
  EXPECT_EQ(FieldOf(record, "09"), "02000101000001030000010400000109000001" "0A0000010B00");
  EXPECT_EQ(FieldOf(record, "03"), "4E616D6500");
  EXPECT_EQ(FieldOf(record, "0F"), "absent");  // the source's 0x0F is not carried over
  EXPECT_EQ(FieldOf(record, "16"), "absent");  // no network value, no network field
  EXPECT_EQ(FieldOf(BuildRecord(SourceCode(false), Required()).hex, "17"), "absent");
}

TEST(ServiceBookRecord, ABlankNameUidOrCidRefusesButABlankUserIdDoesNot) {
  for (std::size_t box : {17u, 18u, 19u}) {
    EditorValues v = Required();
    v[box].clear();
    const BuiltRecord built = BuildRecord(SourceCode(), v);
    EXPECT_EQ(built.hex, "");
    ASSERT_TRUE(built.refusal);
    EXPECT_EQ(*built.refusal,
              (Message{"Service-book name, UID, CID, UserID cannot be blank", "", MessageIcon::Critical}));
  }
  EXPECT_FALSE(BuildRecord(SourceCode(), Required()).refusal);
}

TEST(ServiceBookRecord, NetworkSettingsWriteEachSubFieldOnlyWhenItsValuesAreThere) {
  EditorValues v = Required();
  v[0] = "48";
  v[1] = "3";
  v[2] = "HRT";
  v[3] = "apn\r\n.example";  // control characters are cleaned before writing
  v[4] = "1.2.3.4.5";
  v[5] = "10", v[6] = "0", v[7] = "0", v[8] = "257";
  v[9] = "8080", v[10] = "9201";
  EXPECT_EQ(FieldOf(BuildRecord(SourceCode(), v).hex, "16"),
            "01000A03" "030009485254" "04000630000000" "0B0003" + TextToHex("apn.example") +
                "0500120102030405" "0400100A000001" "0400111F9023F1");
  v[4] = "0,0,0,0,0";
  v[8] = "";  // one gateway part missing: no gateway sub-field
  v[10] = "";
  EXPECT_EQ(FieldOf(BuildRecord(SourceCode(), v).hex, "16"),
            "01000A03" "030009485254" "04000630000000" "0B0003" + TextToHex("apn.example") + "0500120000000000");
  v[4] = "1.2.3";
  EXPECT_THROW(BuildRecord(SourceCode(), v), CommandError);
  v[4] = "";
  v[0] = "x";
  EXPECT_THROW(BuildRecord(SourceCode(), v), CommandError);
}

TEST(ServiceBookRecord, ThePanelReadsBackEveryValueTheBuilderWrites) {
  EditorValues v{};
  const std::vector<std::string> values = {"48",  "3",    "HRT",  "apn.example", "1.2.3.4.5", "10",    "0",
                                           "0",   "1",    "8080", "9201",        "gw:8799",   "descr", "ds",
                                           "uid", "src",  "home", "Name",        "UID",       "CID",   "-1",
                                           "Description"};
  std::copy(values.begin(), values.end(), v.begin());
  const BuiltRecord built = BuildRecord(SourceCode(), v);
  const Bytes record = HexToBytes(built.hex);
  const ServiceBookBoxes boxes = DecodeServiceBookPanel(ByteView(record).subspan(7));
  for (std::size_t i = 0; i < v.size(); ++i) EXPECT_EQ(boxes[i].value_or("<unset>"), v[i]) << "hrtnet(" << i << ")";
}

}  // namespace
}  // namespace orchidlamp
