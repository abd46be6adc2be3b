// Writes a large, realistic backup for load tests and benchmarks, streaming it
// record by record. The same count and seed give the same bytes.
//
//   make_large_backup OUT.ipd RECORDS [SEED]

#include <charconv>
#include <fstream>
#include <iostream>
#include <string_view>
#include <vector>

#include "generators/large_backup.h"

namespace {

bool ParseNumber(std::string_view text, std::uint64_t& value) {
  const auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), value);
  return ec == std::errc() && end == text.data() + text.size();
}

}  // namespace

int main(int argc, char** argv) {
  std::uint64_t records = 0, seed = 1;
  if (argc < 3 || argc > 4 || !ParseNumber(argv[2], records) || (argc == 4 && !ParseNumber(argv[3], seed))) {
    std::cerr << "usage: make_large_backup OUT.ipd RECORDS [SEED]\n";
    return 2;
  }
  std::vector<char> buffer(1 << 20);
  std::ofstream out;
  out.rdbuf()->pubsetbuf(buffer.data(), static_cast<std::streamsize>(buffer.size()));
  out.open(argv[1], std::ios::binary | std::ios::trunc);
  const std::uint64_t bytes = orchidlamp::testing::WriteLargeBackup(out, records, seed);
  out.close();
  if (!out) {
    std::cerr << "make_large_backup: cannot write " << argv[1] << '\n';
    return 1;
  }
  std::cout << argv[1] << ": " << records << " records, " << bytes << " bytes\n";
  return 0;
}
