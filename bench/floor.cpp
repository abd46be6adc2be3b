// The floor of every command that loads a backup: read the whole file in one
// piece and walk the record headers (with the marker skip), nothing more. It
// prints the record count so the walk cannot be optimised away.
//
//   orchidlamp_floor FILE

#include <cstdio>
#include <iostream>

#include "core/ipd_format.h"

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: orchidlamp_floor FILE\n";
    return 2;
  }
  std::FILE* f = std::fopen(argv[1], "rb");
  if (!f) {
    std::cerr << "cannot open " << argv[1] << '\n';
    return 1;
  }
  std::fseek(f, 0, SEEK_END);
  const long size = std::ftell(f);
  std::fseek(f, 0, SEEK_SET);
  orchidlamp::Bytes bytes(static_cast<std::size_t>(size > 0 ? size : 0));
  const std::size_t read = bytes.empty() ? 0 : std::fread(bytes.data(), 1, bytes.size(), f);
  std::fclose(f);
  if (read != bytes.size()) {
    std::cerr << "cannot read " << argv[1] << '\n';
    return 1;
  }
  const auto table = orchidlamp::ReadNameTable(bytes);
  if (!table) {
    std::cerr << table.failure().message.text << '\n';
    return 1;
  }
  std::size_t records = 0;
  const auto walked = orchidlamp::WalkRecords(bytes, table->recordsStart,
                                              [&](const orchidlamp::RecordLocation&) { ++records; });
  std::cout << records << " records\n";
  return walked ? 0 : 1;
}
