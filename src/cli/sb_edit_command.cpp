#include <charconv>

#include "cli/commands.h"
#include "core/code_page_1256.h"
#include "editing/service_book_editor.h"
#include "records/record_click.h"

namespace orchidlamp::cli {
namespace {

struct BoxSetting {
  std::size_t box = 0;
  std::string value;  // 8-bit text
};

std::optional<BoxSetting> ParseSetting(const std::string& word) {
  const auto equals = word.find('=');
  if (equals == std::string::npos || equals == 0) return std::nullopt;
  std::size_t box = 0;
  const char* begin = word.data();
  const char* end = word.data() + equals;
  const auto [ptr, ec] = std::from_chars(begin, end, box);
  if (ec != std::errc() || ptr != end || box >= kServiceBookBoxes) return std::nullopt;
  return BoxSetting{box, Utf8ToCp1256(std::string_view(word).substr(equals + 1))};
}

}  // namespace

int RunSbEdit(CliContext& context, const std::vector<std::string>& words) {
  std::string error;
  auto args = ParseArgs(words, {"--set"}, {"--save", "--save-all"}, error);
  if (!args) return UsageError(error);
  if (auto problem = PositionalsError(*args, 2, "sb-edit takes FILE and TAG")) return UsageError(*problem);
  if (args->Has("--save") == args->Has("--save-all")) return UsageError("sb-edit takes one of --save and --save-all");
  std::vector<BoxSetting> settings;
  for (const std::string& word : args->All("--set")) {
    auto setting = ParseSetting(word);
    if (!setting) return UsageError("--set takes N=VALUE with N from 0 to 21, not '" + word + "'");
    settings.push_back(std::move(*setting));
  }

  int exitCode = kExitOk;
  // The editor starts from the panel's boxes, which the click fills.
  if (!OpenAndClick(context, args->positionals[0], args->positionals[1], exitCode)) return exitCode;
  Workspace& ws = context.workspace();

  auto opened = EditSB::Open(ws);
  if (!opened) return context.Report(opened.failure());
  // Not a service-book record: the editor does not open and nothing is shown.
  if (!opened.value()) return kExitOk;
  EditSB& editor = *opened.value();
  for (BoxSetting& s : settings) editor.hrtnet[s.box] = std::move(s.value);

  auto saved = args->Has("--save") ? editor.Save(ws) : editor.SaveAll(ws);
  if (!saved) return context.Report(saved.failure());
  for (const Message& m : saved->messages) {
    if (m.icon == MessageIcon::Information)
      context.Inform(m);
    else
      (void)context.Report(Failure{m});
  }
  return kExitOk;
}

}  // namespace orchidlamp::cli
