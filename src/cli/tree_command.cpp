#include <iostream>

#include "cli/commands.h"

namespace orchidlamp::cli {

int RunTree(CliContext& context, const std::vector<std::string>& words) {
  std::string error;
  auto args = ParseArgs(words, {}, {}, error);
  if (!args) return UsageError(error);
  if (auto problem = PositionalsError(*args, 1, "tree takes one FILE")) return UsageError(*problem);
  int exitCode = kExitOk;
  if (!OpenOrReport(context, args->positionals[0], exitCode)) return exitCode;
  const DatabaseTree& tree = context.workspace().tree();
  std::string out;
  tree.ForEachDepthFirst([&](NodeId id, int depth) {
    const RecordLabel label = tree.Label(id);
    out += std::to_string(depth);
    out += '\t';
    out += DisplayLine(tree.Key(id));
    out += '\t';
    out += ImageKeyText(label.image);
    out += '\t';
    out += tree.TagText(id);
    out += '\t';
    out += DisplayLine(label.text);
    out += '\n';
    if (out.size() > (1 << 20)) std::cout << out, out.clear();
  });
  std::cout << out;
  return kExitOk;
}

}  // namespace orchidlamp::cli
