// The media scan searches the loaded bytes directly. The hits must be those of
// the search defined on hex text: a match of the marker's digits that starts on
// a byte boundary.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/hex_text.h"
#include "export/media_extraction.h"
#include "support/ipd_builder.h"
#include "generators/large_backup.h"

namespace orchidlamp {
namespace {

using namespace orchidlamp::testing;

std::vector<std::size_t> FindAllByHex(ByteView haystack, ByteView pattern) {
  const std::string hex = BytesToHex(haystack), needle = BytesToHex(pattern);
  std::vector<std::size_t> hits;
  for (std::size_t at = hex.find(needle); at != std::string::npos; at = hex.find(needle, at + 1))
    if (at % 2 == 0) hits.push_back(at / 2);
  return hits;
}

// Random bytes from a small alphabet, so that partial markers abound, with
// whole markers planted here and there, some overlapping or at the very end.
Bytes Haystack(RecordFaker& dice, const std::vector<Bytes>& markers) {
  static constexpr std::uint8_t kAlphabet[] = {0xFF, 0xD8, 0xD9, 0xE0, 0x00, 0x89, 0x50, 0x49, 0x45, 0x4E, 0x44, 0x0D};
  Bytes out;
  const std::size_t size = 200 + dice.Below(3000);
  while (out.size() < size) {
    if (dice.Chance(3)) {
      const Bytes& m = markers[dice.Below(static_cast<std::uint32_t>(markers.size()))];
      out.insert(out.end(), m.begin(), m.end() - (dice.Chance(20) ? 1 : 0));
    } else {
      out.push_back(kAlphabet[dice.Below(sizeof kAlphabet)]);
    }
  }
  return out;
}

TEST(MediaScanPaths, EveryMarkerIsFoundWhereTheHexSearchFindsIt) {
  const std::vector<Bytes> markers = {Hex("89504E470D0A1A0A0000000D49484452"), Hex("49454E44"),
                                      Hex("FFD8FFE000104A46494600"), Hex("FFD9"), Hex("FFFF")};
  RecordFaker dice(2024);
  for (int round = 0; round < 300; ++round) {
    const Bytes hay = Haystack(dice, markers);
    for (const Bytes& marker : markers) {
      const auto fast = FindAll(hay, marker);
      ASSERT_EQ(fast, FindAllByHex(hay, marker)) << "round " << round;
    }
  }
}

TEST(MediaScanPaths, HitsOnTheLastBytesAndOverlappingHitsAreKept) {
  EXPECT_EQ(FindAll(Hex("00FFD9"), Hex("FFD9")), (std::vector<std::size_t>{1}));
  EXPECT_EQ(FindAll(Hex("FFFFFF"), Hex("FFFF")), (std::vector<std::size_t>{0, 1}));
  // A marker straddling two bytes' digits ("F" "FD9") is no hit.
  EXPECT_TRUE(FindAll(Hex("0FFD90"), Hex("FFD9")).empty());
  EXPECT_EQ(FindAllByHex(Hex("0FFD90"), Hex("FFD9")), std::vector<std::size_t>{});
}

}  // namespace
}  // namespace orchidlamp
