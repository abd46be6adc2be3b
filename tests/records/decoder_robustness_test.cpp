// Every decoder on every record of random and mutated backups: decoders never
// fail and never read outside the record (the sanitizer build checks the reads).

#include <gtest/gtest.h>

#include <random>

#include "records/decoders.h"
#include "records/record_kinds.h"
#include "records/service_book_panel.h"
#include "support/ipd_builder.h"

namespace orchidlamp {
namespace {

using namespace orchidlamp::testing;

std::vector<Bytes> SeedBodies() {
  return {
      SmsRecord(0, false, 1, 2, {{2, Text("+123")}, {4, Hex("06270644")}}).body,
      Body(1, 2, Hex("0401000541424344450012000361626364")),
      Body(1, 2, FieldList({{10, FieldList({{160, Concat({Hex("00"), Utf16(u"Ann")})}, {32, Text("Lee")},
                                             {77, Hex("FFD8FFE0")}})}})),
      Body(1, 2, FieldList({{10, Concat({Hex("01020304"), FieldList({{130, Hex("000041")}, {6, LE32(9)}})})}})),
      Body(1, 2, FieldList({{2, Hex("01")}, {3, LE32(61)}, {4, LE64(5)}, {12, Text("555")}, {159, Hex("000042")}})),
      Body(1, 2, FieldList({{3, TextZ("WAP")}, {9, Hex("020005016162636400")},
                            {22, FieldList({{6, LE32(7)}, {0x12, Hex("01020304")}, {0x11, Hex("0102")}})}})),
      Body(1, 2, FieldList({{1, Text("teh")}, {130, Hex("0041")}, {9, Hex("09")}, {10, Hex("02")}})),
  };
}

void DecodeEveryWay(ByteView body) {
  const ContactPictureSink sink = [](ByteView jpeg, std::int64_t) { return std::to_string(jpeg.size()); };
  for (int k = 0; k < kKindCount; ++k) {
    const RecordKindRow& row = RowOf(static_cast<Kind>(k));
    (void)row.label(body);
    if (row.decode) (void)row.decode(body, DecodeContext{5.5, 1, &sink});
  }
  (void)DecodeServiceBookPanel(body);
  (void)DecodeContact(body, 0, true, sink);
  (void)DecodeAppointment(body, true, -11);
}

TEST(DecoderRobustness, TruncatedAndMutatedRecordsDecodeWithoutFault) {
  std::mt19937 rng(7);
  for (const Bytes& seed : SeedBodies()) {
    for (std::size_t cut = 0; cut <= seed.size(); ++cut) DecodeEveryWay(ByteView(seed).first(cut));
    for (int round = 0; round < 400; ++round) {
      Bytes body = seed;
      for (int k = 0; k < 3; ++k) body[rng() % body.size()] = static_cast<std::uint8_t>(rng());
      // Copy into an exactly sized buffer so a read past the end is caught.
      body.resize(rng() % (body.size() + 1));
      const std::vector<std::uint8_t> exact(body.begin(), body.end());
      DecodeEveryWay(exact);
    }
  }
  for (int round = 0; round < 1500; ++round) {
    Bytes body(rng() % 120);
    for (auto& b : body) b = static_cast<std::uint8_t>(rng() % 3 ? rng() % 16 : rng());
    DecodeEveryWay(body);
  }
}

TEST(DecoderRobustness, AOneByteRecordGivesEmptyMembers) {
  const Bytes one = {0x42};
  EXPECT_EQ(DecodeMemo(one).MemoTitle, "");
  EXPECT_EQ(DecodeCall(one, 0).CallName, "");
  EXPECT_EQ(CallLabel(one), "Unknown Number");
  EXPECT_EQ(DecodeTask(one).Priority, "High");
  EXPECT_EQ(DecodeSms(one, 0).Status, "Sent");
}

}  // namespace
}  // namespace orchidlamp
