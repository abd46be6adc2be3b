#include "core/hex_text.h"

#include <gtest/gtest.h>

#include "core/result.h"

namespace orchidlamp {
namespace {

TEST(HexText, NumbersTextAndFieldFinders) {
  const std::string fields = "0200" "20" "4142" "0100" "20" "43" "0300" "07" "444546";  // 32 "AB", 32 "C", 7 "DEF"
  const std::vector<std::pair<std::string, std::string>> rows = {
      {std::to_string(HexToLong("")), "0"},            {std::to_string(HexToLong("ff")), "255"},
      {std::to_string(HexToLong("FFFFFFFF")), "-1"},   {std::to_string(HexToLong("123456789")), "591751049"},
      {ByteToHex(0x1AB), "AB"},                        {ByteToHex(-1), "FF"},
      {HexToLE16("5"), "0500"},                        {HexToLE16("123"), "2301"},
      {HexToLE16("12345"), ""},                        {HexToLE16(""), ""},
      {ReverseHexBytes("0A0B0C"), "0C0B0A"},           {TextToHex("Az\n"), "417A0A"},
      {HexToText("41a"), "A\x0A"},                     {HexToAnsiText("C7"), "\xC7"},
      // Windows-1256: alef and lam are C7 and E1; a CJK character has no byte; an incomplete group is dropped.
      {UnicodeHexToText("062706440048"), "\xC7\xE1H"}, {UnicodeHexToText("4E2D0041004"), "?A"},
      {UnicodeHexToText("0000"), std::string(1, '\0')}, {BytesToHex(HexToBytes("00ff10")), "00FF10"},
      {CleanControlChars("A\r\n\tB", false), "AB"},    {CleanControlChars("A\r\n\tB\x1F", true), "A\r\nB"},
      {FindField(fields, "32"), "4142"},               {FindField(fields, "32", 2), "43"},
      {FindField(fields, "7"), "444546"},              {FindField(fields, "07", 2), ""},
      {FindField("0200", "2"), ""},                    {FindField("0500" "01" "4142", "1"), "4142"},
      // Mode 2 wants the very next field: a field of another type between the two 32s means none.
      {FindField("010020" "41" "010009" "42" "010020" "43", "32", 2), ""},
      {FindFieldLenType("0201" "4142" "00" "0103" "43" "00", "3"), "43"},
      {FindFieldTypeLen("0102" "4142" "0801" "43", "8"), "43"},  {FindFieldTypeLen("01", "1"), ""}};
  for (std::size_t i = 0; i < rows.size(); ++i) EXPECT_EQ(rows[i].first, rows[i].second) << "row " << i;
  EXPECT_THROW(HexToLong("0G"), CommandError);
}

}  // namespace
}  // namespace orchidlamp
