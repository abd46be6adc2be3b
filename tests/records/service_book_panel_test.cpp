#include "records/service_book_panel.h"

#include <gtest/gtest.h>

#include "records/decoders.h"
#include "support/ipd_builder.h"

namespace orchidlamp {
namespace {

using namespace orchidlamp::testing;

Bytes Fields(const std::vector<testing::Field>& fields) { return Body(1, 2, FieldList(fields)); }

// Field 9 as the editor writes it: 02, then per sub-field 00, text length + 1,
// type, text, 00. Read from its third byte, that is length-type sub-fields whose
// data ends in the NUL, each followed by one further byte.
Bytes LenTypeConnection() {
  return Concat({Hex("02"), Hex("000501"), Text("host"), Hex("00"), Hex("000303"), Text("ab"), Hex("00")});
}

TEST(ServiceBookPanel, SingleFieldsAndTheUserId) {
  const ServiceBookBoxes boxes = DecodeServiceBookPanel(
      Fields({{3, TextZ("WAP2 Transport")}, {7, TextZ("uid")}, {8, TextZ("CID")}, {6, Hex("FFFFFFFF")},
              {15, TextZ("Desc")}}));
  EXPECT_EQ(boxes[17], "WAP2 Transport");
  EXPECT_EQ(boxes[18], "uid");
  EXPECT_EQ(boxes[19], "CID");
  EXPECT_EQ(boxes[20], "-1");
  EXPECT_EQ(boxes[21], "Desc");
  EXPECT_FALSE(boxes[0].has_value());
  EXPECT_EQ(DecodeServiceBookPanel(Fields({{6, Hex("05")}}))[20], "5");
  EXPECT_EQ(ServiceBookLabel(Fields({{3, TextZ("WAP2 Transport")}})), "WAP2 Transport");
}

TEST(ServiceBookPanel, NetworkSubFields) {
  const Bytes network = FieldList({{0x0A, Hex("0103")}, {0x09, Text("HRT")}, {0x06, Hex("30000000")},
                                   {0x03, Text("apn.example")}, {0x12, Hex("0102030405FF")},
                                   {0x10, Hex("C0A80001")}, {0x11, Hex("1F900050")}});
  const ServiceBookBoxes b = DecodeServiceBookPanel(Fields({{0x16, network}}));
  EXPECT_EQ(b[0], "48");
  EXPECT_EQ(b[1], "259");  // 01 03 read as one number, most significant first
  EXPECT_EQ(b[2], "HRT");
  EXPECT_EQ(b[3], "apn.example");
  EXPECT_EQ(b[4], "1.2.3.4.5");
  EXPECT_EQ(b[5], "192");
  EXPECT_EQ(b[8], "1");
  EXPECT_EQ(b[9], "8080");
  EXPECT_EQ(b[10], "80");
  EXPECT_FALSE(b[17].has_value());
}

TEST(ServiceBookPanel, ConnectionFieldPrefersTheLengthTypeLayout) {
  const ServiceBookBoxes b = DecodeServiceBookPanel(Fields({{9, LenTypeConnection()}}));
  EXPECT_EQ(b[11], "host");
  EXPECT_EQ(b[12], "ab");
  EXPECT_FALSE(b[13].has_value());  // empty sub-fields leave their boxes alone
}

TEST(ServiceBookPanel, ConnectionFieldFallsBackToTypeLength) {
  // One leading byte, then type, length, data: the layout devices write.
  const Bytes data = Concat({Hex("01"), Hex("0105"), Text("1.2.3"), Hex("0802"), Text("gw"), Hex("0201"), Hex("01")});
  const ServiceBookBoxes b = DecodeServiceBookPanel(Fields({{9, data}}));
  EXPECT_EQ(b[11], "1.2.3");
  EXPECT_EQ(b[12], "gw");
  EXPECT_EQ(b[16], "");  // sub-field 2 holds only a control character
  EXPECT_FALSE(b[13].has_value());
}

TEST(ServiceBookPanel, UnsetBoxesKeepWhatThePanelShowed) {
  std::array<std::string, kServiceBookBoxes> panel;
  panel.fill("old");
  ApplyServiceBookBoxes(DecodeServiceBookPanel(Fields({{3, TextZ("new")}, {7, {}}})), panel);
  EXPECT_EQ(panel[17], "new");
  EXPECT_EQ(panel[18], "old");
  EXPECT_EQ(panel[0], "old");
}

}  // namespace
}  // namespace orchidlamp
