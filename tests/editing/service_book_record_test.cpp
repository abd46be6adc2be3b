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
  fields.insert(fields.end(), {{0x03, TextZ("Old name")}, {0x05, Hex("0012")},     {0x06, Hex("FFFFFFFF")},
                                {0x07, TextZ("UID1")},     {0x08, TextZ("CID1")},   {0x09, Hex("0200050168")},
                                {0x0F, TextZ("old desc")}, {0x10, Hex("77")},       {0x11, Hex("0304")},
                                {0x12, Hex("0000")},       {0x18, Hex("1366084A")}, {0x16, Hex("01000A03")}});
  return BytesToHex(RecordBytes(FieldRecord(4, fields, 0x0102, 0xA1B2C3D4)));
}

EditorValues Values(std::initializer_list<std::pair<std::size_t, std::string>> set) {
  EditorValues v{};
  v[17] = "Name", v[18] = "UID", v[19] = "CID";
  for (const auto& [box, value] : set) v[box] = value;
  return v;
}

// The data of the built record's field of `type` (hex), or "absent".
std::string FieldOf(const std::string& record, std::uint8_t type) {
  const Bytes bytes = HexToBytes(record);
  for (std::size_t p = 13; p + 3 <= bytes.size(); p += 3 + (bytes[p] | bytes[p + 1] << 8))
    if (bytes[p + 2] == type) return BytesToHex(ByteView(bytes).subspan(p + 3, bytes[p] | bytes[p + 1] << 8));
  return "absent";
}

TEST(ServiceBookRecord, KeepsHeaderAndCopiedFieldsAndWritesTheValuesInOrder) {
  const BuiltRecord built = BuildRecord(SourceCode(), Values({{20, "-1"}, {21, "desc"}}));
  const std::string expected = "020001" "0A0B" "010002" "01" "040017" "5D708BC7" "020005" "0012"
                               "0500034E616D6500" "04000755494400" "04000843494400" "040006FFFFFFFF"
                               "05000F6465736300" "190009" "02000101000001030000010400000109000001" "0A0000010B00"
                               "010010" "77" "020011" "0304" "020012" "0000" "040018" "1366084A";
  // Database id 0, the 16-bit length, "0000", then version, handle and uid of the source.
  const std::size_t length = 7 + expected.size() / 2;
  EXPECT_EQ(built.hex, "0000" + ByteToHex(length) + ByteToHex(length >> 8) + "0000" "00" "0201" "D4C3B2A1" + expected);
}

TEST(ServiceBookRecord, FieldsFollowTheirValues) {
  const std::string full = SourceCode();
  const EditorValues network = Values({{0, "48"}, {1, "3"}, {2, "HRT"}, {3, "apn\r\n.example"}, {4, "1.2.3.4.5"},
                                       {5, "10"}, {6, "0"}, {7, "0"}, {8, "257"}, {9, "8080"}, {10, "9201"}});
  EditorValues patched = network;
  patched[4] = "0,0,0,0,0", patched[8] = "", patched[10] = "";
  const std::vector<std::tuple<EditorValues, std::uint8_t, std::string>> rows = {
      {Values({{20, "-1"}}), 0x06, "FFFFFFFF"},  {Values({{20, "5"}}), 0x06, "05"},  // the user id's low byte
      {Values({{20, "300"}}), 0x06, "2C"},       {Values({}), 0x06, "absent"},         // a blank user id: no field
      {Values({}), 0x03, "4E616D6500"},          {Values({}), 0x0F, "absent"},         // 0x0F is not carried over
      {Values({}), 0x16, "absent"},              // no network value, no network field
      {network, 0x16, "01000A03" "030009485254" "04000630000000" "0B0003" + TextToHex("apn.example") +
                          "0500120102030405" "0400100A000001" "0400111F9023F1"},
      // One gateway or port part missing: no gateway or port sub-field; control characters are cleaned.
      {patched, 0x16, "01000A03" "030009485254" "04000630000000" "0B0003" + TextToHex("apn.example") +
                          "0500120000000000"}};
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const auto& [values, type, data] = rows[i];
    EXPECT_EQ(FieldOf(BuildRecord(full, values).hex, type), data) << "row " << i;
  }
  EXPECT_EQ(FieldOf(BuildRecord(SourceCode(false), Values({})).hex, 0x17), "absent");
  EXPECT_EQ(MakeStringField("ABC", "03", true) + MakeStringField("ABC", "09", false) + MakeStringField("", "0F", true),
            "04000341424300" "030009414243" "01000F00");
  for (EditorValues bad : {Values({{20, "five"}}), Values({{20, "5x"}}), Values({{4, "1.2.3"}}), Values({{0, "x"}})})
    EXPECT_THROW(BuildRecord(full, bad), CommandError);
}

TEST(ServiceBookRecord, ABlankNameUidOrCidGivesNoRecordButTheBlankValueMessage) {
  for (std::size_t box : {17u, 18u, 19u})
    EXPECT_EQ(BuildRecord(SourceCode(), Values({{box, ""}})).refusal,
              (Message{"Service-book name, UID, CID, UserID cannot be blank", "", MessageIcon::Critical}));
}

TEST(ServiceBookRecord, ThePanelReadsBackEveryValueTheBuilderWrites) {
  const std::vector<std::string> values = {"48", "3",   "HRT",  "apn.example", "1.2.3.4.5", "10",  "0",   "0",
                                           "1",  "8080", "9201", "gw:8799",     "descr",     "ds",  "uid", "src",
                                           "home", "Name", "UID", "CID",        "-1",        "Description"};
  EditorValues v{};
  std::copy(values.begin(), values.end(), v.begin());
  const Bytes record = HexToBytes(BuildRecord(SourceCode(), v).hex);
  const ServiceBookBoxes boxes = DecodeServiceBookPanel(ByteView(record).subspan(7));
  for (std::size_t i = 0; i < v.size(); ++i) EXPECT_EQ(boxes[i].value_or("<unset>"), v[i]) << "hrtnet(" << i << ")";
}

}  // namespace
}  // namespace orchidlamp
