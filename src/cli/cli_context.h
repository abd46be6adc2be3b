#pragma once

// What every command of orchidlamp-cli shares: the global options, the workspace
// it opens files into, and the way messages and record text reach the terminal.

#include <iosfwd>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/result.h"
#include "core/workspace.h"
#include "records/record_kinds.h"

namespace orchidlamp::cli {

inline constexpr int kExitOk = 0;
inline constexpr int kExitFailed = 1;
inline constexpr int kExitUsage = 2;
// --keep-going ran the command on a backup that was read only in part.
inline constexpr int kExitPartial = 3;

struct GlobalOptions {
  std::optional<std::string> timeZone;
  std::optional<std::string> delimiter;
  std::optional<std::string> programDir;
  std::optional<std::string> outDir;
  bool keepGoing = false;
};

class CliContext {
 public:
  explicit CliContext(GlobalOptions options);

  Workspace& workspace() { return ws_; }
  const StoredSettings& settings() const { return settings_; }
  const std::string& programFolder() const { return programFolder_; }

  // Opens FILE as the window's open flow does (a BBB is converted first). With
  // --keep-going a load that fails part way prints its message and succeeds
  // with what was read, as the window lets its user go on.
  Status Open(const std::string& path, TreeScope scope = TreeScope::Records);
  // The command's exit status, made kExitPartial when it ran to its end on a
  // backup read in part.
  int Finish(int exitCode) const { return exitCode == kExitOk && partial_ ? kExitPartial : exitCode; }

  // Information texts go to standard output, warnings and errors to standard error.
  int Report(const Failure& failure);
  void Inform(const Message& message);

 private:
  KindLabeller labeller_;
  Workspace ws_;
  StoredSettings settings_;
  std::string programFolder_;
  bool keepGoing_ = false;
  bool partial_ = false;
};

// 8-bit record text as one line of UTF-8: backslash, tab, CR, LF and other
// control characters escaped.
std::string DisplayLine(std::string_view text8bit);
void AppendDisplayLine(std::string& out, std::string_view text8bit);

// A malformed command line: the usage text on standard error, exit 2.
int UsageError(std::string_view problem);

// Splits a command's words into positionals and named options.
struct ParsedArgs {
  std::vector<std::string> positionals;
  std::vector<std::pair<std::string, std::string>> options;  // in order; flags have empty values
  std::vector<std::string> All(std::string_view name) const;
  std::optional<std::string> One(std::string_view name) const;
  bool Has(std::string_view name) const;
};
// When `args` has other than `expected` positionals: the usage problem, naming
// the first word too many when there is one.
std::optional<std::string> PositionalsError(const ParsedArgs& args, std::size_t expected, std::string_view usage);

// `valued` names options that take a value; `flags` those that do not. Any
// other word starting with "--" is an error naming it.
std::optional<ParsedArgs> ParseArgs(const std::vector<std::string>& words, const std::vector<std::string>& valued,
                                    const std::vector<std::string>& flags, std::string& error);

}  // namespace orchidlamp::cli
