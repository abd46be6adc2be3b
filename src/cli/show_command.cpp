#include <iostream>

#include "cli/commands.h"
#include "records/record_click.h"

namespace orchidlamp::cli {

int RunShow(CliContext& context, const std::vector<std::string>& words) {
  std::string error;
  auto args = ParseArgs(words, {}, {}, error);
  if (!args) return UsageError(error);
  if (auto problem = PositionalsError(*args, 2, "show takes FILE and TAG")) return UsageError(*problem);
  int exitCode = kExitOk;
  const auto shown = OpenAndClick(context, args->positionals[0], args->positionals[1], exitCode);
  if (!shown) return exitCode;
  const Workspace& ws = context.workspace();
  if (shown->panel == Kind::ServiceBook) {
    for (std::size_t i = 0; i < ws.hrtnet.size(); ++i)
      std::cout << "hrtnet(" << i << ")=" << DisplayLine(ws.hrtnet[i]) << '\n';
  } else {
    for (const Member& m : shown->members) std::cout << m.name << '=' << DisplayLine(m.value) << '\n';
  }
  return kExitOk;
}

}  // namespace orchidlamp::cli
