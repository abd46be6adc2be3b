#include <iostream>

#include "cli/commands.h"
#include "export/media_extraction.h"
#include "platform/program_folder.h"

namespace orchidlamp::cli {

int RunMedia(CliContext& context, const std::vector<std::string>& words) {
  std::string error;
  auto args = ParseArgs(words, {}, {"--jpg", "--png"}, error);
  if (!args) return UsageError(error);
  if (auto problem = PositionalsError(*args, 1, "media takes one FILE")) return UsageError(*problem);
  if (args->Has("--jpg") == args->Has("--png")) return UsageError("media needs exactly one of --jpg and --png");

  // The window makes the media folder when it starts; extraction itself never does.
  EnsureMediaFolder(context.programFolder());
  int exitCode = kExitOk;
  if (!OpenOrReport(context, args->positionals[0], exitCode, TreeScope::DatabasesOnly)) return exitCode;
  const Workspace& ws = context.workspace();
  const MediaExtraction run = args->Has("--png") ? ExtractPngImages(ws) : ExtractJpgImages(ws);
  for (const std::string& path : run.saved) std::cout << path << '\n';
  if (run.failure) return context.Report(*run.failure);
  if (run.success) context.Inform(*run.success);
  return kExitOk;
}

}  // namespace orchidlamp::cli
