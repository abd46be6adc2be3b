#include <iostream>

#include "cli/commands.h"
#include "records/record_click.h"

namespace orchidlamp::cli {

int RunShow(CliContext& context, const std::vector<std::string>& words) {
  std::string error;
  auto args = ParseArgs(words, {}, {}, error);
  if (!args) return UsageError(error);
  if (args->positionals.size() != 2) return UsageError("show takes FILE and TAG");
  int exitCode = kExitOk;
  if (!OpenOrReport(context, args->positionals[0], exitCode)) return exitCode;
  Workspace& ws = context.workspace();
  const NodeId node = ws.tree().FindByTag(args->positionals[1]);
  if (node == kNoNode) return context.Report(Fail("No record node has the tag " + args->positionals[1]));
  ws.selected = node;
  const ClickResult shown = ClickNode(ws, node);
  if (shown.panel == Kind::ServiceBook) {
    for (std::size_t i = 0; i < ws.hrtnet.size(); ++i)
      std::cout << "hrtnet(" << i << ")=" << DisplayLine(ws.hrtnet[i]) << '\n';
  } else {
    for (const Member& m : shown.members) std::cout << m.name << '=' << DisplayLine(m.value) << '\n';
  }
  return kExitOk;
}

}  // namespace orchidlamp::cli
