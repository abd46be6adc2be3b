#include <iostream>

#include "cli/commands.h"
#include "export/export_panel.h"
#include "export/text_export.h"

namespace orchidlamp::cli {
namespace {

std::optional<ExportScope> ScopeNamed(std::string_view name) {
  if (name == "record") return kScopeRecord;
  if (name == "kind") return kScopeKind;
  if (name == "all") return kScopeTree;
  return std::nullopt;
}

}  // namespace

// The window's flow: select the node, the export menu prepares the panel, the
// scope option is clicked, then the text or CSV button.
int RunExport(CliContext& context, const std::vector<std::string>& words) {
  std::string error;
  auto args = ParseArgs(words, {"--scope", "--node"}, {"--txt", "--csv"}, error);
  if (!args) return UsageError(error);
  if (auto problem = PositionalsError(*args, 1, "export takes one FILE")) return UsageError(*problem);
  if (args->Has("--txt") == args->Has("--csv")) return UsageError("export needs exactly one of --txt and --csv");
  const auto scopeName = args->One("--scope");
  if (!scopeName) return UsageError("export needs --scope record|kind|all");
  const auto scope = ScopeNamed(*scopeName);
  if (!scope) return UsageError("unknown scope '" + *scopeName + "' (record, kind or all)");
  const auto nodeName = args->One("--node");
  if (!nodeName && *scope != kScopeTree) return UsageError("--scope " + *scopeName + " needs --node TAG");

  int exitCode = kExitOk;
  if (!OpenOrReport(context, args->positionals[0], exitCode)) return exitCode;
  Workspace& ws = context.workspace();
  ExportPanel panel;
  if (nodeName) {
    const NodeId node = ws.tree().FindByKeyOrTag(*nodeName);
    if (node == kNoNode) return context.Report(Fail("No node has the key or tag " + *nodeName));
    ws.selected = node;
    const Status prepared = PrepareExport(ws, panel);
    if (!prepared) return context.Report(prepared.failure());
  }
  panel.Check(*scope);

  auto done = PressExport(ws, panel, args->Has("--txt") ? ExportForm::Text : ExportForm::Csv);
  if (!done) return context.Report(done.failure());
  if (done.value()) context.Inform(done.value()->message);
  return kExitOk;
}

}  // namespace orchidlamp::cli
