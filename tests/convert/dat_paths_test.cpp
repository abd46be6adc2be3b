// The .dat writer and reader copy record bytes straight between buffers. These
// tests build the same bytes the way the conversions are defined, on hex text
// cut by position, and require equality on random backups.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "convert/desktop_backup_reader.h"
#include "convert/desktop_backup_writer.h"
#include "core/hex_text.h"
#include "core/ipd_format.h"
#include "support/ipd_builder.h"
#include "generators/large_backup.h"

namespace orchidlamp {
namespace {

using namespace orchidlamp::testing;

// A backup of `count` random records over the generated databases, with marker
// blocks of both kinds, in both orders, between records.
Bytes RandomBackup(std::uint64_t seed, std::size_t count) {
  RecordFaker faker(seed);
  IpdBuilder b;
  for (const char* name : kLargeBackupDatabases) b.Database(name);
  for (std::size_t i = 0; i < count; ++i) {
    const auto db = static_cast<std::uint16_t>(faker.Below(kLargeBackupDatabases.size()));
    b.Add(faker.Chance(30) ? faker.Sms(db) : faker.Chance(50) ? faker.Contact(db, false) : faker.Opaque(db));
    if (faker.Chance(10)) b.Raw(Hex("FFFF02000000"));
    if (faker.Chance(10)) b.Raw(Hex("FFFF02000100"));
  }
  return b.Build();
}

std::uint32_t HexLE(const std::string& hex, std::size_t at, std::size_t bytes) {
  std::uint32_t value = 0;
  for (std::size_t i = bytes; i-- > 0;) value = value * 256 + static_cast<std::uint32_t>(HexToLong(hex.substr(2 * (at + i), 2)));
  return value;
}

bool MarkerHexAt(const std::string& hex, std::size_t at, const char* last) {
  return hex.size() >= 2 * (at + 5) && hex.compare(2 * at, 10, std::string("FFFF0200") + last) == 0;
}

// Each database's .dat as hex text: one-database header, the name entry, then
// every record renumbered k = index + 1, the 00 then 01 marker blocks dropped.
std::vector<Bytes> DatsByHex(ByteView ipd) {
  const std::string hex = BytesToHex(ipd);
  auto table = ReadNameTable(ipd);
  std::vector<std::string> dats;
  for (const NameEntry& entry : table->entries)
    dats.push_back(IpdHeaderHex(1) + hex.substr(2 * entry.offset, 2 * (2 + entry.length)));
  const std::size_t size = ipd.size();
  for (std::size_t p = table->recordsStart; p < size;) {
    const std::uint32_t database = HexLE(hex, p, 2), length = HexLE(hex, p + 2, 4);
    const std::uint32_t k = database + 1;
    dats[database] += ByteToHex(k) + ByteToHex(k >> 8) + hex.substr(2 * (p + 2), 2 * (4 + length));
    p += 6 + length;
    if (p < size - 1) {
      if (MarkerHexAt(hex, p, "00")) p += 6;
      if (MarkerHexAt(hex, p, "01")) p += 6;
    }
  }
  std::vector<Bytes> out;
  for (const std::string& dat : dats) out.push_back(HexToBytes(dat));
  return out;
}

TEST(DatPaths, DatsOfRandomBackupsEqualTheHexTextBuild) {
  for (std::uint64_t seed = 1; seed <= 15; ++seed) {
    const Bytes ipd = RandomBackup(seed, 20 + 25 * seed);
    std::vector<Bytes> dats;
    auto summaries = SummarizeForSave(ipd, &dats, nullptr);
    ASSERT_TRUE(summaries) << summaries.failure().message.text;
    const std::vector<Bytes> expected = DatsByHex(ipd);
    ASSERT_EQ(dats.size(), expected.size());
    for (std::size_t i = 0; i < dats.size(); ++i) EXPECT_TRUE(dats[i] == expected[i]) << "seed " << seed << " dat " << i;
    // The counts follow from the same walk: a .dat's records are its count.
    std::size_t total = 0;
    for (const DatabaseSummary& s : summaries.value()) total += s.recordCount;
    EXPECT_EQ(total, 20 + 25 * seed) << "seed " << seed;
  }
}

TEST(DatPaths, ReadingTheDatsBackGivesTheRecordsOfTheBackupInDatabaseOrder) {
  const Bytes ipd = RandomBackup(77, 400);
  std::vector<Bytes> dats;
  ASSERT_TRUE(SummarizeForSave(ipd, &dats, nullptr));
  DatabaseParts parts;
  std::string names, records;
  for (std::size_t i = 0; i < dats.size(); ++i) {
    ASSERT_TRUE(AppendDatabaseBytes(dats[i], std::to_string(i + 1) + ".dat", parts));
    // By hex: the name entry at offset 42, records renumbered back to x - 1.
    const std::string hex = BytesToHex(dats[i]);
    const std::uint32_t nameLength = HexLE(hex, kIpdHeaderSize, 2);
    names += hex.substr(2 * kIpdHeaderSize, 2 * (2 + nameLength));
    for (std::size_t p = kIpdHeaderSize + 2 + nameLength; p < dats[i].size();) {
      const std::uint32_t x = HexLE(hex, p, 2), length = HexLE(hex, p + 2, 4);
      records += ByteToHex(x - 1) + ByteToHex((x - 1) >> 8) + hex.substr(2 * (p + 2), 2 * (4 + length));
      p += 6 + length;
    }
  }
  EXPECT_TRUE(parts.names == HexToBytes(names));
  EXPECT_TRUE(parts.records == HexToBytes(records));
}

TEST(DatPaths, ARefusedDatAmongGoodOnesLeavesThePartsAsTheGoodOnesMadeThem) {
  const Bytes ipd = RandomBackup(5, 200);
  std::vector<Bytes> dats;
  ASSERT_TRUE(SummarizeForSave(ipd, &dats, nullptr));
  DatabaseParts parts;
  for (std::size_t i = 0; i < 3; ++i) ASSERT_TRUE(AppendDatabaseBytes(dats[i], "good.dat", parts));
  const DatabaseParts before = parts;
  Bytes cut = dats[10];
  ASSERT_GT(cut.size(), 60u);
  cut.resize(cut.size() - 3);  // the last record now claims more than is there
  EXPECT_FALSE(AppendDatabaseBytes(cut, "cut.dat", parts));
  EXPECT_TRUE(parts.names == before.names);
  EXPECT_TRUE(parts.records == before.records);
  ASSERT_TRUE(AppendDatabaseBytes(dats[3], "good.dat", parts));
  EXPECT_GT(parts.records.size(), before.records.size());
}

}  // namespace
}  // namespace orchidlamp
