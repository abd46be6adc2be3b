#include "core/hex_text.h"

#include <gtest/gtest.h>

#include <random>

#include "core/message.h"
#include "records/field_walk.h"
#include "support/ipd_builder.h"

namespace orchidlamp {
namespace {

using testing::FieldList;
using testing::Hex;

TEST(HexNumbers, HexToLongKeepsTheRightmostEightDigitsAsSigned32) {
  EXPECT_EQ(HexToLong(""), 0);
  EXPECT_EQ(HexToLong("7F"), 127);
  EXPECT_EQ(HexToLong("ff"), 255);
  EXPECT_EQ(HexToLong("FFFFFFFF"), -1);
  EXPECT_EQ(HexToLong("80000000"), INT32_MIN);
  EXPECT_EQ(HexToLong("123456789"), 0x23456789);
  EXPECT_THROW(HexToLong("0G"), CommandError);
}

TEST(HexNumbers, ByteToHexAndLittleEndianForms) {
  EXPECT_EQ(ByteToHex(0), "00");
  EXPECT_EQ(ByteToHex(255), "FF");
  EXPECT_EQ(ByteToHex(0x1AB), "AB");
  EXPECT_EQ(ByteToHex(-1), "FF");
  EXPECT_EQ(HexToLE16("5"), "0500");
  EXPECT_EQ(HexToLE16("0C"), "0C00");
  EXPECT_EQ(HexToLE16("123"), "2301");
  EXPECT_EQ(HexToLE16("1A2B"), "2B1A");
  EXPECT_EQ(HexToLE16("12345"), "");
  EXPECT_EQ(HexToLE16(""), "");
  EXPECT_EQ(ReverseHexBytes("0A0B0C"), "0C0B0A");
  EXPECT_EQ(ReverseHexBytes(""), "");
}

TEST(HexText, TextRoundTripsAndLoneDigits) {
  EXPECT_EQ(TextToHex("Az\n"), "417A0A");
  EXPECT_EQ(HexToText("417A0A"), "Az\n");
  EXPECT_EQ(HexToText("41a"), std::string("A\x0A"));
  EXPECT_EQ(HexToAnsiText("C7"), "\xC7");
  EXPECT_EQ(HexToBytes("00FF10"), (Bytes{0x00, 0xFF, 0x10}));
}

TEST(HexText, Utf16ConvertsThroughTheArabicCodePage) {
  // Alef and lam are C7 and E1 in Windows-1256; a CJK character has no byte.
  EXPECT_EQ(UnicodeHexToText("062706440048"), "\xC7\xE1H");
  EXPECT_EQ(UnicodeHexToText("4E2D"), "?");
  EXPECT_EQ(UnicodeHexToText("0041004"), "A");  // an incomplete group is ignored
  EXPECT_EQ(UnicodeHexToText("0000"), std::string(1, '\0'));
}

TEST(HexText, CleanControlCharsKeepsLineBreaksOnlyWhenAsked) {
  EXPECT_EQ(CleanControlChars(std::string("A\0B", 3), false), "AB");
  EXPECT_EQ(CleanControlChars("A\r\nB", true), "A\r\nB");
  EXPECT_EQ(CleanControlChars("A\r\n\tB", false), "AB");
  EXPECT_EQ(CleanControlChars("\xC7\x1F", false), "\xC7");
}

TEST(FieldFinders, FindFieldWalksTheIpdLayout) {
  const std::string list = "0200" "20" "4142"  // 32: "AB"
                           "0100" "20" "43"    // 32: "C" right after
                           "0300" "07" "444546";
  EXPECT_EQ(FindField(list, "32"), "4142");
  EXPECT_EQ(FindField(list, "32", 2), "43");
  EXPECT_EQ(FindField(list, "7"), "444546");
  EXPECT_EQ(FindField(list, "07", 2), "");  // last field: nothing follows
  EXPECT_EQ(FindField(list, "9"), "");
  EXPECT_EQ(FindField("0200", "2"), "");      // shorter than one header
  EXPECT_EQ(FindField("0500" "01" "4142", "1"), "4142");  // clipped to what is there
  // A field of another type between the two 32s: no last name.
  EXPECT_EQ(FindField("010020" "41" "010009" "42" "010020" "43", "32", 2), "");
}

TEST(FieldFinders, OneByteLayouts) {
  // Length-type: len, type, data, one further byte.
  const std::string lenType = "0201" "4142" "00" "0103" "43" "00";
  EXPECT_EQ(FindFieldLenType(lenType, "1"), "4142");
  EXPECT_EQ(FindFieldLenType(lenType, "3"), "43");
  EXPECT_EQ(FindFieldLenType(lenType, "4"), "");
  // Type-length: type, len, data.
  const std::string typeLen = "0102" "4142" "0801" "43";
  EXPECT_EQ(FindFieldTypeLen(typeLen, "1"), "4142");
  EXPECT_EQ(FindFieldTypeLen(typeLen, "8"), "43");
  EXPECT_EQ(FindFieldTypeLen("01", "1"), "");
}

// The byte walk the decoders use must find exactly what FindField finds on the
// record's hex text, for any list, well-formed or not.
TEST(FieldFinders, ByteWalkAgreesWithHexFindFieldOnRandomLists) {
  std::mt19937 rng(1234);
  for (int round = 0; round < 3000; ++round) {
    Bytes list(rng() % 40);
    for (auto& b : list) b = static_cast<std::uint8_t>(rng() % 4 == 0 ? rng() % 6 : rng());
    const std::string hex = BytesToHex(list);
    const orchidlamp::FieldList fields(list);
    for (int type = 0; type < 6; ++type) {
      const std::string code = std::to_string(type);
      ASSERT_EQ(BytesToHex(fields.Find(type)), FindField(hex, code)) << hex << " type " << type;
      ASSERT_EQ(BytesToHex(fields.FindFollowing(type)), FindField(hex, code, 2)) << hex << " type " << type;
    }
  }
}

}  // namespace
}  // namespace orchidlamp
