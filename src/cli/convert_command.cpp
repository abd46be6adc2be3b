#include <iostream>

#include "cli/commands.h"
#include "convert/desktop_backup_writer.h"

namespace orchidlamp::cli {

int RunConvert(CliContext& context, const std::vector<std::string>& words) {
  std::string error;
  auto args = ParseArgs(words, {"--to"}, {}, error);
  if (!args) return UsageError(error);
  if (auto problem = PositionalsError(*args, 2, "convert takes IN and OUT")) return UsageError(*problem);
  const auto to = args->One("--to");
  if (!to) return UsageError("convert needs --to ipd|bbb-win|bbb-mac");
  SaveKind kind;
  if (*to == "bbb-win") kind = SaveKind::WindowsBbb;
  else if (*to == "bbb-mac") kind = SaveKind::MacBbb;
  else if (*to == "ipd") kind = SaveKind::Ipd;
  else return UsageError("--to takes ipd, bbb-win or bbb-mac, not '" + *to + "'");
  const std::string& out = args->positionals[1];
  if (out.empty()) return UsageError("OUT is empty");

  int exitCode = kExitOk;
  if (!OpenOrReport(context, args->positionals[0], exitCode)) return exitCode;
  auto saved = SaveAs(context.workspace(), out, static_cast<int>(kind));
  if (!saved) return context.Report(saved.failure());
  context.Inform(saved.value());
  return kExitOk;
}

}  // namespace orchidlamp::cli
