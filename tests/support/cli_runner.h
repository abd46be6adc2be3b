#pragma once
#include <string>
#include <vector>

namespace orchidlamp::testing {

struct CliRun {
  int exitCode = -1;
  std::string out, err;
};

// Runs the built orchidlamp-cli (or the one ORCHIDLAMP_CLI names) with these
// arguments and an isolated settings store.
CliRun RunCli(const std::vector<std::string>& args);
std::string SamplePath();  // the bundled sample backup (or the file ORCHIDLAMP_SAMPLE names)

}  // namespace orchidlamp::testing
