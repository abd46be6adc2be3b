#include <iostream>

#include "cli/commands.h"
#include "export/migration.h"

namespace orchidlamp::cli {
namespace {

// "--only a,b --only c" as kinds; the first unknown name is the error.
std::optional<std::vector<MigrateKind>> KindsNamed(const std::vector<std::string>& lists, std::string& unknown) {
  std::vector<MigrateKind> kinds;
  for (const std::string& list : lists) {
    std::size_t from = 0;
    while (from <= list.size()) {
      std::size_t to = list.find(',', from);
      if (to == std::string::npos) to = list.size();
      const std::string name = list.substr(from, to - from);
      const auto kind = MigrateKindNamed(name);
      if (!kind) {
        unknown = name;
        return std::nullopt;
      }
      kinds.push_back(*kind);
      from = to + 1;
    }
  }
  return kinds;
}

}  // namespace

int RunMigrate(CliContext& context, const std::vector<std::string>& words) {
  std::string error;
  auto args = ParseArgs(words, {"--charset", "--only"}, {}, error);
  if (!args) return UsageError(error);
  if (auto problem = PositionalsError(*args, 2, "migrate takes FILE and OUTDIR")) return UsageError(*problem);

  MigrationOptions options;
  options.outDir = args->positionals[1];
  const auto charset = args->One("--charset");
  options.charset = charset ? *charset : context.settings().migrateCharset;
  if (charset && !CodePage::Open(*charset)) return UsageError("unknown character set '" + *charset + "'");
  std::string unknown;
  const auto kinds = KindsNamed(args->All("--only"), unknown);
  if (!kinds)
    return UsageError("unknown kind '" + unknown +
                      "' (contacts, calendar, messages, calls, memos, bookmarks, autotext)");
  options.only = *kinds;

  int exitCode = kExitOk;
  if (!OpenOrReport(context, args->positionals[0], exitCode)) return exitCode;
  auto report = Guarded([&] { return Migrate(context.workspace(), options); });
  if (!report) return context.Report(report.failure());
  for (const MigrationSkip& skip : report->skipped)
    std::cerr << "skipped " << skip.count << " records of " << skip.kind << '\n';
  for (const MigratedFile& file : report->files) std::cout << file.name << '\t' << file.count << '\n';
  return kExitOk;
}

}  // namespace orchidlamp::cli
