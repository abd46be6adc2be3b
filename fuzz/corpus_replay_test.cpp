// Every file kept in tests/corpus (seeds and every input that ever crashed a
// fuzzer) goes through every target's entry function in the ordinary build, so
// a fixed crash stays fixed without libFuzzer.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <ostream>
#include <vector>

#include "fuzz_targets.h"

namespace orchidlamp::fuzz {
namespace {

std::vector<std::filesystem::path> CorpusFiles() {
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(ORCHIDLAMP_CORPUS_DIR))
    if (entry.is_regular_file()) files.push_back(entry.path());
  std::sort(files.begin(), files.end());
  return files;
}

std::vector<std::uint8_t> ReadAll(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

}  // namespace

// Test names and failure output show the target by its name.
void PrintTo(const FuzzTarget& target, std::ostream* os) { *os << target.name; }

namespace {

class CorpusReplay : public ::testing::TestWithParam<FuzzTarget> {};

TEST_P(CorpusReplay, EveryKeptInputRunsToItsEnd) {
  const auto files = CorpusFiles();
  for (const auto& file : files) {
    SCOPED_TRACE(file.string());
    const auto bytes = ReadAll(file);
    EXPECT_EQ(GetParam().run(bytes.data(), bytes.size()), 0);
  }
}

// Each target's own folder must hold seeds: an empty one would let the fuzzer
// start from nothing and this replay prove nothing for that target.
TEST_P(CorpusReplay, TargetHasSeeds) {
  const std::filesystem::path folder = std::filesystem::path(ORCHIDLAMP_CORPUS_DIR) / GetParam().name;
  ASSERT_TRUE(std::filesystem::is_directory(folder)) << folder;
  EXPECT_NE(std::filesystem::directory_iterator(folder), std::filesystem::directory_iterator());
}

INSTANTIATE_TEST_SUITE_P(AllTargets, CorpusReplay, ::testing::ValuesIn(AllTargets().begin(), AllTargets().end()),
                         [](const auto& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace orchidlamp::fuzz
