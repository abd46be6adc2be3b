#include <charconv>
#include <iostream>

#include "cli/commands.h"

namespace orchidlamp::cli {
namespace {

void AppendNumber(std::string& out, std::int64_t value) {
  char digits[24];
  const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
  out.append(digits, end);
}

}  // namespace

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
    AppendNumber(out, depth);
    out += '\t';
    AppendDisplayLine(out, tree.Key(id));
    out += '\t';
    out += ImageKeyText(label.image);
    out += '\t';
    if (const auto tag = tree.Tag(id)) {
      AppendNumber(out, tag->first);
      out += ':';
      AppendNumber(out, tag->last);
    }
    out += '\t';
    AppendDisplayLine(out, label.text);
    out += '\n';
    if (out.size() > (1 << 20)) std::cout << out, out.clear();
  });
  std::cout << out;
  return kExitOk;
}

}  // namespace orchidlamp::cli
