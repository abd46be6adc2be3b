#include "cli/commands.h"
#include "editing/selection_tree.h"
#include "editing/split.h"

namespace orchidlamp::cli {

int RunSplit(CliContext& context, const std::vector<std::string>& words) {
  std::string error;
  auto args = ParseArgs(words, {"--toggle"}, {}, error);
  if (!args) return UsageError(error);
  if (auto problem = PositionalsError(*args, 2, "split takes FILE and OUT")) return UsageError(*problem);
  int exitCode = kExitOk;
  if (!OpenOrReport(context, args->positionals[0], exitCode)) return exitCode;
  const Workspace& ws = context.workspace();

  DatabaseTree selection = LoadSelectionTree(ws.tree());
  for (const std::string& name : args->All("--toggle")) {
    const NodeId node = selection.FindByKeyOrTag(name);
    // An unknown node depends on the file, not on the command line: a failure, exit 1.
    if (node == kNoNode) return context.Report(Fail("No node of the split tree has the key or tag " + name));
    ToggleNodeCheck(selection, node);
  }

  auto saved = Split(selection, ws.file().View(), args->positionals[1]);
  if (!saved) return context.Report(saved.failure());
  if (saved.value()) context.Inform(*saved.value());
  return kExitOk;
}

}  // namespace orchidlamp::cli
