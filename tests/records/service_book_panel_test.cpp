#include "records/service_book_panel.h"

#include <gtest/gtest.h>

#include "support/ipd_builder.h"

namespace orchidlamp {
namespace {

using namespace orchidlamp::testing;

Bytes Fields(const std::vector<testing::Field>& fields) { return Body(1, 2, FieldList(fields)); }

struct BoxCase {
  Bytes body;
  std::size_t box;
  std::optional<std::string> expected;  // nullopt: the box keeps what the panel showed
};

TEST(ServiceBookPanel, BoxesFromEveryField) {
  const Bytes single = Fields({{3, TextZ("WAP2 Transport")}, {7, TextZ("uid")}, {8, TextZ("CID")},
                               {6, Hex("FFFFFFFF")}, {15, TextZ("Desc")}});
  const Bytes network =
      Fields({{0x16, FieldList({{0x0A, Hex("0103")}, {0x09, Text("HRT")}, {0x06, Hex("30000000")},
                                {0x03, Text("apn.example")}, {0x12, Hex("0102030405FF")}, {0x10, Hex("C0A80001")},
                                {0x11, Hex("1F900050")}})}});
  // Field 9 as the editor writes it (length-type sub-fields from its third byte)...
  const Bytes lenType = Fields(
      {{9, Concat({Hex("02"), Hex("000501"), Text("host"), Hex("00"), Hex("000303"), Text("ab"), Hex("00")})}});
  // ... and as devices write it (type-length after one byte), read when the first finds nothing.
  const Bytes typeLen = Fields(
      {{9, Concat({Hex("01"), Hex("0105"), Text("1.2.3"), Hex("0802"), Text("gw"), Hex("0201"), Hex("01")})}});
  const std::vector<BoxCase> cases = {
      {single, 17, "WAP2 Transport"}, {single, 18, "uid"}, {single, 19, "CID"}, {single, 20, "-1"},
      {single, 21, "Desc"},           {single, 0, std::nullopt}, {Fields({{6, Hex("05")}}), 20, "5"},
      {network, 0, "48"},             {network, 1, "259"},  // 01 03 as one number, most significant first
      {network, 2, "HRT"},            {network, 3, "apn.example"}, {network, 4, "1.2.3.4.5"},
      {network, 5, "192"},            {network, 8, "1"},    {network, 9, "8080"},
      {network, 10, "80"},            {network, 17, std::nullopt},
      {lenType, 11, "host"},          {lenType, 12, "ab"},  {lenType, 13, std::nullopt},
      {typeLen, 11, "1.2.3"},         {typeLen, 12, "gw"},  {typeLen, 13, std::nullopt},
      {typeLen, 16, ""},  // sub-field 2 holds only a control character
  };
  for (const BoxCase& c : cases) EXPECT_EQ(DecodeServiceBookPanel(c.body)[c.box], c.expected) << "box " << c.box;
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
