// orchidlamp-fuzz-replay TARGET|all FILE|FOLDER...: runs files through the
// fuzzing entry functions without libFuzzer, to reproduce a crash under a
// debugger or an ordinary (gcc) build. Folders are replayed file by file.

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <vector>

#include "fuzz_targets.h"

namespace {

std::vector<std::filesystem::path> FilesOf(const std::filesystem::path& path) {
  std::vector<std::filesystem::path> files;
  if (std::filesystem::is_directory(path)) {
    for (const auto& entry : std::filesystem::recursive_directory_iterator(path))
      if (entry.is_regular_file()) files.push_back(entry.path());
    std::sort(files.begin(), files.end());
  } else {
    files.push_back(path);
  }
  return files;
}

}  // namespace

int main(int argc, char** argv) {
  using orchidlamp::fuzz::AllTargets;
  if (argc < 3) {
    std::cerr << "usage: orchidlamp-fuzz-replay TARGET|all FILE|FOLDER...\ntargets:";
    for (const auto& target : AllTargets()) std::cerr << ' ' << target.name;
    std::cerr << '\n';
    return 2;
  }
  const std::string wanted = argv[1];
  std::size_t replayed = 0;
  for (int a = 2; a < argc; ++a) {
    for (const auto& file : FilesOf(argv[a])) {
      std::ifstream in(file, std::ios::binary);
      const std::vector<char> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
      for (const auto& target : AllTargets()) {
        if (wanted != "all" && wanted != target.name) continue;
        std::cout << target.name << ' ' << file.string() << std::endl;
        target.run(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
        ++replayed;
      }
    }
  }
  if (replayed == 0) {
    std::cerr << "nothing replayed: unknown target or no files\n";
    return 2;
  }
  return 0;
}
