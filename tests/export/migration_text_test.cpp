#include <gtest/gtest.h>

#include "export/migrate_instant.h"
#include "export/migrate_text.h"
#include "export/migrate_text_format.h"
#include "support/ipd_builder.h"

namespace orchidlamp {
namespace {

using namespace orchidlamp::testing;

struct SmsCase {
  const char* what;
  Bytes message, field7;
  const char* charset;
  std::string expected;
};

TEST(MigrationText, SmsMessageByItsStatedEncoding) {
  const SmsCase cases[] = {
      {"GSM: 00 @, 02 $, 11 _", Hex("00021148693F"), Hex("0004"), "windows-1256", "@$_Hi?"},
      {"GSM extension table", Hex("1B281B651B3C1B2F"), Hex("00"), "windows-1256", "{€[\\"},
      {"GSM Greek capitals", Hex("101213"), Hex("00"), "windows-1256", "ΔΦΓ"},
      {"GSM with a byte above 7F: the code page", Hex("E1E2E33132"), Hex("00"), "iso-8859-7", "αβγ12"},
      {"UCS-2 Greek", Utf16(u"Γειά"), Hex("02"), "windows-1256", "Γειά"},
      {"UCS-2 Latin keeps its zero bytes apart", Utf16(u"Hi!"), Hex("02"), "windows-1256", "Hi!"},
      {"UCS-2 CJK", Utf16(u"你好"), Hex("0201"), "windows-1256", "你好"},
      {"no field 7, 06 first: UTF-16", Utf16(u"مرحبا"), {}, "windows-1256", "مرحبا"},
      {"no field 7, valid UTF-8", Text("Gr\xC3\xBC\xC3\x9F" "e"), {}, "windows-1256", "Grüße"},
      {"no field 7, 8-bit Arabic", Hex("C7E1"), {}, "windows-1256", "ال"},
      {"controls dropped, line breaks kept", Text("A\x01" "B\tC\r\nD\x7F"), {}, "windows-1256", "AB\tC\r\nD"},
  };
  for (const SmsCase& c : cases) {
    auto codePage = CodePage::Open(c.charset);
    ASSERT_TRUE(codePage);
    EXPECT_EQ(SmsMessageText(c.message, c.field7, codePage.value()), c.expected) << c.what;
  }
}

TEST(MigrationText, EightBitAndUtf16Fields) {
  auto cp1256 = CodePage::Open("windows-1256");
  ASSERT_TRUE(cp1256);
  EXPECT_EQ(EightBitText(Text("plain ASCII"), cp1256.value()), "plain ASCII");
  // Not valid UTF-8: an 8-bit byte that a code page reads.
  EXPECT_EQ(EightBitText(Hex("C341"), cp1256.value()), "أA");
  EXPECT_EQ(Utf16AfterLead(Concat({Hex("00"), Utf16(u"Ωμέγα")})), "Ωμέγα");
  EXPECT_EQ(Utf16Text(Hex("D83DDE00D800")), "😀\uFFFD");  // a pair, then a lone surrogate
  EXPECT_FALSE(CodePage::Open("no-such-charset"));
}

TEST(MigrationTextFormat, Base64AndEscaping) {
  const std::pair<const char*, const char*> vectors[] = {
      {"", ""}, {"f", "Zg=="}, {"fo", "Zm8="}, {"foo", "Zm9v"}, {"foob", "Zm9vYg=="}, {"foobar", "Zm9vYmFy"}};
  for (const auto& [in, out] : vectors) EXPECT_EQ(Base64(Text(in)), out) << in;
  EXPECT_EQ(EscapeContentValue("a,b;c\\d\r\ne\nf\rg"), "a\\,b\\;c\\\\d\\ne\\nf\\ng");
  EXPECT_EQ(CsvField("plain"), "plain");
  EXPECT_EQ(CsvField("say \"hi\", then\r\nleave"), "\"say \"\"hi\"\", then\r\nleave\"");
  EXPECT_EQ(EscapeHtml("<a href=\"x\">&</a>"), "&lt;a href=&quot;x&quot;&gt;&amp;&lt;/a&gt;");
}

// Folded lines stay within 75 octets, never start inside a UTF-8 sequence, and
// unfold to the line given.
TEST(MigrationTextFormat, FoldsAt75OctetsBetweenCharacters) {
  std::string one, two, three, four;
  for (int i = 0; i < 120; ++i) one += "a", two += "é", three += "語", four += "😀";
  for (const std::string& value : {one, two, three, four, "N:" + two + one + three}) {
    const std::string line = "NOTE:" + value;
    const std::string folded = FoldContentLine(line);
    std::string unfolded;
    for (std::size_t from = 0, end; (end = folded.find("\r\n", from)) != std::string::npos; from = end + 2) {
      const std::string physical = folded.substr(from, end - from), content = physical.substr(from > 0);
      EXPECT_LE(physical.size(), 75u);
      EXPECT_TRUE(from == 0 || physical[0] == ' ');
      EXPECT_NE(static_cast<unsigned char>(content.at(0)) & 0xC0, 0x80) << "cut inside a character";
      unfolded += content;
    }
    EXPECT_EQ(unfolded, line);
  }
}

TEST(MigrationInstant, TrueUtcAndTheRangeTheDisplayShows) {
  const std::pair<std::int64_t, const char*> ms[] = {{0, "1970-01-01 00:00:00"}, {-1, "1969-12-31 23:59:59"},
      {1141885846260, "2006-03-09 06:30:46"}, {253402300799999, "9999-12-31 23:59:59"}};
  for (const auto& [count, text] : ms) EXPECT_EQ(ReadableText(FromUnixMilliseconds(count).value()), text);
  EXPECT_FALSE(FromUnixMilliseconds(253402300800000));  // year 10000
  EXPECT_FALSE(FromUnixMinutes(-1040000000));           // before year 100
  EXPECT_EQ(BasicUtcText(*FromUnixMinutes(21678330)), "20110321T093000Z");
}

}  // namespace
}  // namespace orchidlamp
