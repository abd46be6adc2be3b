#include "cli/commands.h"
#include "editing/merge.h"
#include "editing/merge_source.h"
#include "editing/selection_tree.h"

namespace orchidlamp::cli {
namespace {

// Applies the toggles of one tree; returns the first name that names no node.
std::optional<std::string> ApplyToggles(DatabaseTree& tree, const std::vector<std::string>& names) {
  for (const std::string& name : names) {
    const NodeId node = tree.FindByKeyOrTag(name);
    if (node == kNoNode) return name;
    ToggleNodeCheck(tree, node);
  }
  return std::nullopt;
}

}  // namespace

int RunMerge(CliContext& context, const std::vector<std::string>& words) {
  std::string error;
  auto args = ParseArgs(words, {"--toggle1", "--toggle2"}, {}, error);
  if (!args) return UsageError(error);
  if (auto problem = PositionalsError(*args, 3, "merge takes FILE1, FILE2 and OUT")) return UsageError(*problem);
  int exitCode = kExitOk;
  if (!OpenOrReport(context, args->positionals[0], exitCode)) return exitCode;
  const Workspace& ws = context.workspace();

  DatabaseTree first = LoadSelectionTree(ws.tree());
  // The second file is chosen in the dialog's own open box: always read as an IPD.
  auto second = BrowseSecondFile(args->positionals[1], ws.labeller());
  if (!second) return context.Report(second.failure());

  if (auto unknown = ApplyToggles(first, args->All("--toggle1")))
    return context.Report(Fail("No node of the first merge tree has the key or tag " + *unknown));
  if (auto unknown = ApplyToggles(second->tree, args->All("--toggle2")))
    return context.Report(Fail("No node of the second merge tree has the key or tag " + *unknown));

  auto saved = Merge({first, ws.file().View()}, {second->tree, second->bytes}, args->positionals[2]);
  if (!saved) return context.Report(saved.failure());
  if (saved.value()) context.Inform(*saved.value());
  return kExitOk;
}

}  // namespace orchidlamp::cli
