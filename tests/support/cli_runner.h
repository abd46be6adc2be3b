#pragma once

#include <string>
#include <vector>

namespace orchidlamp::testing {

struct CliRun {
  int exitCode = -1;
  std::string out;
  std::string err;
};

// Runs the built orchidlamp-cli (its path comes from ORCHIDLAMP_CLI) with these
// arguments and an isolated settings store.
CliRun RunCli(const std::vector<std::string>& args);

// The bundled sample backup (ORCHIDLAMP_SAMPLE).
std::string SamplePath();

}  // namespace orchidlamp::testing
