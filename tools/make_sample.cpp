// Writes the bundled sample backup. The bytes depend on nothing but this
// program's sources, so regenerating samples/sample.ipd is reviewable as a diff.
//
//   make_sample samples/sample.ipd

#include <fstream>
#include <iostream>

#include "generators/sample_backup.h"

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: make_sample OUT.ipd\n";
    return 2;
  }
  const orchidlamp::Bytes bytes = orchidlamp::testing::SampleBackup();
  std::ofstream out(argv[1], std::ios::binary | std::ios::trunc);
  out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  out.close();
  if (!out) {
    std::cerr << "make_sample: cannot write " << argv[1] << '\n';
    return 1;
  }
  std::cout << argv[1] << ": " << bytes.size() << " bytes\n";
  return 0;
}
