#include <iostream>

#include "cli/commands.h"

namespace orchidlamp::cli {

int RunStatus(CliContext& context, const std::vector<std::string>& words) {
  std::string error;
  auto args = ParseArgs(words, {}, {}, error);
  if (!args) return UsageError(error);
  if (auto problem = PositionalsError(*args, 1, "status takes one FILE")) return UsageError(*problem);
  int exitCode = kExitOk;
  if (!OpenOrReport(context, args->positionals[0], exitCode, TreeScope::DatabasesOnly)) return exitCode;
  const StatusPanels& status = context.workspace().status();
  std::cout << DisplayLine(status.main) << '\n' << DisplayLine(status.details) << '\n';
  return kExitOk;
}

}  // namespace orchidlamp::cli
