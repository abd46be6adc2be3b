#include "cli/commands.h"

namespace orchidlamp::cli {

int RunSbEdit(CliContext& context, const std::vector<std::string>& words) {
  (void)words;
  return context.Report(Fail("This command is not available yet"));
}

}  // namespace orchidlamp::cli
