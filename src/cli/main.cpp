// orchidlamp-cli: the window's commands without a window. It parses the command
// line, runs the same core code the window runs and prints what the window shows.

#include <QCoreApplication>
#include <iostream>

#include "cli/commands.h"

namespace orchidlamp::cli {
namespace {

int PrintHelp() {
  std::cout << "orchidlamp-cli: read and rework BlackBerry backups (IPD and BBB) from the command line\n\n"
            << "usage: orchidlamp-cli [GLOBAL OPTIONS] COMMAND ARGS...\n\ncommands:\n";
  for (const Command& c : kCommands) std::cout << "  " << c.synopsis << "\n      " << c.summary << "\n";
  std::cout << "\nglobal options:\n"
               "  --timezone TEXT     hours added to dates (\"GMT\", \"+3\", \"-5\", \"5.5\")\n"
               "  --delimiter TEXT    CSV delimiter setting (\",\", \";\", \"TAB\", \"SPACE\", \"< >\", ...)\n"
               "  --program-dir DIR   where media and contact pictures are written\n"
               "  --out-dir DIR       where exports and edited backups are written\n"
               "\nexample: orchidlamp-cli tree samples/sample.ipd\n";
  return kExitOk;
}

}  // namespace

bool OpenOrReport(CliContext& context, const std::string& path, int& exitCode) {
  Status opened = context.Open(path);
  if (opened) return true;
  exitCode = context.Report(opened.failure());
  return false;
}

}  // namespace orchidlamp::cli

int main(int argc, char** argv) {
  using namespace orchidlamp::cli;
  QCoreApplication app(argc, argv);
  QCoreApplication::setOrganizationName("Orchidlamp");
  QCoreApplication::setApplicationName("Orchidlamp");

  GlobalOptions globals;
  std::vector<std::string> rest;
  for (int i = 1; i < argc; ++i) {
    const std::string word = argv[i];
    auto value = [&](std::optional<std::string>& into) {
      if (i + 1 >= argc) return false;
      into = argv[++i];
      return true;
    };
    if (word == "--help" || word == "-h") return PrintHelp();
    if (word == "--version") {
      std::cout << "orchidlamp-cli " << ORCHIDLAMP_VERSION << "\n";
      return kExitOk;
    }
    bool ok = true;
    if (word == "--timezone") ok = value(globals.timeZone);
    else if (word == "--delimiter") ok = value(globals.delimiter);
    else if (word == "--program-dir") ok = value(globals.programDir);
    else if (word == "--out-dir") ok = value(globals.outDir);
    else rest.push_back(word);
    if (!ok) return UsageError("option " + word + " needs a value");
  }
  if (rest.empty()) return UsageError("no command given");
  for (const Command& command : kCommands) {
    if (command.name != rest.front()) continue;
    CliContext context(globals);
    return command.run(context, std::vector<std::string>(rest.begin() + 1, rest.end()));
  }
  return UsageError("unknown command '" + rest.front() + "'");
}
