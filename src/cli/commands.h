#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "cli/cli_context.h"

namespace orchidlamp::cli {

// A command gets the words after its name, global options already taken out.
using CommandFn = int (*)(CliContext& context, const std::vector<std::string>& words);

struct Command {
  std::string_view name;
  CommandFn run;
  std::string_view synopsis;
  std::string_view summary;
};

int RunTree(CliContext&, const std::vector<std::string>&);
int RunStatus(CliContext&, const std::vector<std::string>&);
int RunShow(CliContext&, const std::vector<std::string>&);
int RunExport(CliContext&, const std::vector<std::string>&);
int RunMedia(CliContext&, const std::vector<std::string>&);
int RunSplit(CliContext&, const std::vector<std::string>&);
int RunMerge(CliContext&, const std::vector<std::string>&);
int RunSbEdit(CliContext&, const std::vector<std::string>&);
int RunConvert(CliContext&, const std::vector<std::string>&);

inline constexpr Command kCommands[] = {
    {"tree", RunTree, "tree FILE", "print the database tree, one node per line"},
    {"status", RunStatus, "status FILE", "print the status bar's two panels"},
    {"show", RunShow, "show FILE TAG", "print the decoded members of the record node TAG"},
    {"export", RunExport, "export FILE (--txt|--csv) --scope record|kind|all [--node TAG]",
     "export records as a text report or CSV beside the backup"},
    {"media", RunMedia, "media FILE (--jpg|--png)", "save embedded JPEG or PNG pictures to the media folder"},
    {"split", RunSplit, "split FILE OUT [--toggle NODE]...",
     "write the ticked databases and records to OUT; NODE is a node key (\"Top\", \"3DBTop\") "
     "or a record tag, and one that names no node fails (exit 1)"},
    {"merge", RunMerge, "merge FILE1 FILE2 OUT [--toggle1 NODE]... [--toggle2 NODE]...",
     "merge the ticked databases of two backups into OUT; NODE as for split, an unknown one fails (exit 1)"},
    {"sb-edit", RunSbEdit, "sb-edit FILE TAG [--set N=VALUE]... (--save|--save-all)",
     "edit a service-book record and save it as a new IPD beside FILE (or in --out-dir); a TAG "
     "that is no service-book record opens no editor and writes nothing (exit 0)"},
    {"convert", RunConvert, "convert IN OUT --to ipd|bbb-win|bbb-mac", "save the backup as IPD or a desktop backup"},
};

// Opens `path` into the context, printing the failure if it does not load.
// Returns true when the caller may go on.
bool OpenOrReport(CliContext& context, const std::string& path, int& exitCode);

}  // namespace orchidlamp::cli
