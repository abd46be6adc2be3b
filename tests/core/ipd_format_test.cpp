#include "core/ipd_format.h"

#include <gtest/gtest.h>

#include "support/ipd_builder.h"

namespace orchidlamp {
namespace {

using namespace orchidlamp::testing;

std::vector<std::string> Names(const Bytes& file, NameCount count = NameCount::FromHeader) {
  auto table = ReadNameTable(file, count);
  if (!table) return {table.failure().message.text};
  std::vector<std::string> names;
  for (const NameEntry& e : table->entries) names.push_back(e.cleaned);
  return names;
}

TEST(NameTable, CountFromBytes40And41CleanedNamesAndTheTitlesError) {
  const Bytes two = IpdBuilder().Database("Memos").Database("Ta\r\nsks\x01").Build();
  Bytes bigEndian256 = two, cutName(two.begin(), two.end() - 1), missingEntry = two;
  bigEndian256[39] = 1, bigEndian256[40] = 0, missingEntry[40] = 3;  // 01 00 00 read from 40-41 is no database
  const std::string titles = "Error Parsing the file, couldn't read the DB titles";
  const std::vector<std::pair<Bytes, std::vector<std::string>>> rows = {
      {two, {"Memos", "Tasks"}}, {bigEndian256, {}},       {cutName, {titles}},
      {missingEntry, {titles}},  {Bytes(41, 0), {titles}}, {{}, {titles}}};
  for (std::size_t i = 0; i < rows.size(); ++i) EXPECT_EQ(Names(rows[i].first), rows[i].second) << "row " << i;
  EXPECT_EQ(ReadNameTable(bigEndian256)->recordsStart, kIpdHeaderSize);
  EXPECT_EQ(IpdHeaderHex(300).substr(80), "2C00");  // the writers keep the count's low byte
  // A .dat file holds one name whatever its count says.
  EXPECT_EQ(Names(DatFile("Tasks", Hex("FFFF")), NameCount::One), std::vector<std::string>{"Tasks"});
  EXPECT_EQ(Names(Concat({Hex(IpdHeaderHex(1)), Hex("0900")}), NameCount::One), std::vector<std::string>{titles});
}

TEST(RecordWalk, EachMarkerSkipAndEveryWayOfRunningPastTheEnd) {
  const Bytes a = RecordBytes(FieldRecord(0, {{1, Text("a")}})), m0 = Hex("FFFF02000000"), m1 = Hex("FFFF02000100");
  const Bytes cut(a.begin(), a.end() - 1);
  Bytes huge = a;
  huge[2] = huge[3] = huge[4] = huge[5] = 0xFF;  // length FFFFFFFF
  constexpr auto kOne = MarkerSkip::OneBeforeRecord, kDesktop = MarkerSkip::ZeroThenOne;
  struct Row { Bytes records; MarkerSkip skip; std::size_t visited; bool whole; };
  const std::vector<Row> rows = {
      {a, kOne, 1, true},                            // ends exactly at the last byte
      {Concat({a, m1, a, m0, a}), kOne, 3, true},    // one block of either kind before a record
      {Concat({a, m0, m1, a}), kOne, 1, false},      // a second block is read as a record
      {Concat({a, m0}), kOne, 1, false},             // a block at the very end is read as a record
      {Concat({a, m0, m1, a}), kDesktop, 2, true},   // 00 then 01
      {Concat({a, m1, m0, Hex("ABCD")}), kDesktop, 2, true},  // 01 then 00: the 00 is a record of length 2
      {Concat({a, m0}), kDesktop, 1, true},          // dropped at the very end
      {Concat({a, cut}), kOne, 1, false},            {Concat({a, Hex("0100")}), kDesktop, 1, false},
      {huge, kOne, 0, false},                        {{}, kOne, 0, true}};
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const auto& [records, skip, expected, whole] = rows[i];
    std::size_t visited = 0;
    const RecordWalk walk =
        WalkRecords(Concat({Hex(IpdHeaderHex(0)), records}), 42, [&](const RecordLocation&) { ++visited; }, skip);
    EXPECT_EQ(std::tuple(visited, walk.records, walk.whole()), std::tuple(expected, expected, whole)) << "row " << i;
    if (!walk) {
      EXPECT_EQ(walk.failure->message.text, "Error Parsing the file, couldn't read the file records");
    }
  }
}

}  // namespace
}  // namespace orchidlamp
