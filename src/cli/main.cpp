// orchidlamp-cli: the window's commands without a window. It parses the command
// line, runs the same core code the window runs and prints what the window shows.

#include <QCoreApplication>
#include <algorithm>
#include <cctype>
#include <iostream>
#include <string_view>

#include "cli/commands.h"
#include "orchidlamp/version.h"

namespace orchidlamp::cli {
namespace {

constexpr const char* kGlobalOptions =
    "global options (before or after the command):\n"
    "  --timezone TEXT     hours added to dates (\"GMT\", \"+3\", \"-5\", \"5.5\")\n"
    "  --delimiter TEXT    CSV delimiter setting (\",\", \";\", \"TAB\", \"SPACE\", \"< >\", ...)\n"
    "  --program-dir DIR   where media and contact pictures are written\n"
    "  --out-dir DIR       where exports and edited backups are written\n"
    "  --keep-going        run the command on what a damaged backup let be read\n"
    "  --help, -h          this text; COMMAND --help for one command\n"
    "  --version           the program's version\n";

int PrintHelp() {
  std::cout << "orchidlamp-cli: read and rework BlackBerry backups (IPD and BBB) from the command line\n\n"
            << "usage: orchidlamp-cli [GLOBAL OPTIONS] COMMAND ARGS...\n\ncommands:\n";
  for (const Command& c : kCommands) {
    std::string name(c.name);
    name.resize(std::max<std::size_t>(name.size() + 2, 10), ' ');
    std::cout << "  " << name << c.summary << "\n";
  }
  std::cout << "\n"
            << kGlobalOptions
            << "\nFILE may be an IPD or a BBB desktop backup. Exit status: 0 done, 1 stopped with a\n"
               "message on standard error, 2 malformed command line, 3 done with --keep-going on a\n"
               "backup read only in part.\n"
               "\nexample: orchidlamp-cli tree samples/sample.ipd\n"
               "See orchidlamp-cli COMMAND --help and man orchidlamp-cli.\n";
  return kExitOk;
}

int PrintCommandHelp(const Command& c) {
  std::string sentence(c.summary);
  sentence.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(sentence.front())));
  std::cout << "usage: orchidlamp-cli [GLOBAL OPTIONS] " << c.synopsis << "\n\n"
            << sentence << ".\n\n"
            << c.details << "\n"
            << "example: " << c.example << "\n";
  return kExitOk;
}

const Command* FindCommand(std::string_view name) {
  for (const Command& c : kCommands)
    if (c.name == name) return &c;
  return nullptr;
}

}  // namespace

bool OpenOrReport(CliContext& context, const std::string& path, int& exitCode, TreeScope scope) {
  Status opened = context.Open(path, scope);
  if (opened) return true;
  exitCode = context.Report(opened.failure());
  return false;
}

std::optional<ClickResult> OpenAndClick(CliContext& context, const std::string& path, const std::string& tag,
                                        int& exitCode) {
  if (!OpenOrReport(context, path, exitCode)) return std::nullopt;
  Workspace& ws = context.workspace();
  const NodeId node = ws.tree().FindByTag(tag);
  if (node == kNoNode) {
    exitCode = context.Report(Fail("No record node has the tag " + tag));
    return std::nullopt;
  }
  ws.selected = node;
  return ClickNode(ws, node);
}

}  // namespace orchidlamp::cli

int main(int argc, char** argv) {
  using namespace orchidlamp::cli;
  QCoreApplication app(argc, argv);
  QCoreApplication::setOrganizationName("Orchidlamp");
  QCoreApplication::setApplicationName("Orchidlamp");

  GlobalOptions globals;
  std::vector<std::string> rest;
  bool wantsHelp = false;
  for (int i = 1; i < argc; ++i) {
    const std::string word = argv[i];
    auto value = [&](std::optional<std::string>& into) {
      if (i + 1 >= argc) return false;
      into = argv[++i];
      return true;
    };
    if (word == "--help" || word == "-h") {
      wantsHelp = true;
      continue;
    }
    if (word == "--version") {
      std::cout << "orchidlamp-cli " << orchidlamp::kVersion << "\n";
      return kExitOk;
    }
    bool ok = true;
    if (word == "--timezone") ok = value(globals.timeZone);
    else if (word == "--delimiter") ok = value(globals.delimiter);
    else if (word == "--program-dir") ok = value(globals.programDir);
    else if (word == "--out-dir") ok = value(globals.outDir);
    else if (word == "--keep-going") globals.keepGoing = true;
    // Before the command name only global options may stand; after it the
    // command's own parser names what it does not know.
    else if (rest.empty() && word.size() > 1 && word[0] == '-') return UsageError("unknown option '" + word + "'");
    else rest.push_back(word);
    if (!ok) return UsageError("option " + word + " needs a value");
  }
  if (rest.empty()) return wantsHelp ? PrintHelp() : UsageError("no command given");
  const Command* command = FindCommand(rest.front());
  if (!command) return UsageError("unknown command '" + rest.front() + "'");
  if (wantsHelp) return PrintCommandHelp(*command);
  CliContext context(globals);
  return context.Finish(command->run(context, std::vector<std::string>(rest.begin() + 1, rest.end())));
}
