#include "cli/cli_context.h"

#include "cli/commands.h"

#include <algorithm>
#include <cstdio>
#include <iostream>

#include "convert/open_backup.h"
#include "core/code_page_1256.h"
#include "core/paths.h"
#include "core/utf8.h"
#include "platform/program_folder.h"
#include "platform/settings_store.h"

namespace orchidlamp::cli {

CliContext::CliContext(GlobalOptions options) : ws_(labeller_) {
  settings_ = ReadStoredSettings();
  if (options.timeZone) settings_.timeZone = *options.timeZone;
  if (options.delimiter) settings_.exportDelimiter = *options.delimiter;
  programFolder_ = options.programDir ? *options.programDir : DefaultProgramFolder();
  ws_.folders().program = programFolder_;
  if (options.outDir) ws_.folders().output = *options.outDir;
  keepGoing_ = options.keepGoing;
}

Status CliContext::Open(const std::string& path, TreeScope scope) {
  Status opened = OpenBackup(ws_, path, BackupKindOf(path), settings_, nullptr, scope);
  // The menus open after a walk that read the name table, whole or not.
  if (opened || !keepGoing_ || !ws_.menus().saveAs) return opened;
  (void)Report(opened.failure());
  partial_ = true;
  return Ok();
}

// Messages are the system's fixed texts with file paths in them; paths are the
// file system's own bytes, so they are printed as they are.
int CliContext::Report(const Failure& failure) {
  std::cerr << failure.message.text << '\n';
  if (!failure.message.detail.empty()) std::cerr << failure.message.detail << '\n';
  return kExitFailed;
}

void CliContext::Inform(const Message& message) { std::cout << message.text << '\n'; }

void AppendDisplayLine(std::string& out, std::string_view text8bit) {
  // Escaping goes by character below 0x80 only: every byte of a longer UTF-8
  // sequence is 0x80 or more, so converting first and escaping after is the same.
  const std::array<char32_t, 256>& codePoints = Cp1256CodePoints();
  for (char byte : text8bit) {
    const char32_t c = codePoints[static_cast<unsigned char>(byte)];
    switch (c) {
      case '\\': out += "\\\\"; break;
      case '\t': out += "\\t"; break;
      case '\r': out += "\\r"; break;
      case '\n': out += "\\n"; break;
      default:
        if (c < 0x20) {
          char hex[8];
          std::snprintf(hex, sizeof hex, "\\x%02X", static_cast<unsigned>(c));
          out += hex;
        } else {
          AppendUtf8(out, c);
        }
    }
  }
}

std::string DisplayLine(std::string_view text8bit) {
  std::string out;
  out.reserve(text8bit.size());
  AppendDisplayLine(out, text8bit);
  return out;
}

int UsageError(std::string_view problem) {
  std::string names;
  for (const Command& c : kCommands) {
    if (!names.empty()) names += ", ";
    names += c.name;
  }
  std::cerr << "orchidlamp-cli: " << problem << "\n"
            << "usage: orchidlamp-cli [--timezone TEXT] [--delimiter TEXT] [--program-dir DIR] [--out-dir DIR] "
               "COMMAND ARGS...\n"
            << "commands: " << names << " (orchidlamp-cli --help for more)\n";
  return kExitUsage;
}

std::vector<std::string> ParsedArgs::All(std::string_view name) const {
  std::vector<std::string> out;
  for (const auto& [n, v] : options)
    if (n == name) out.push_back(v);
  return out;
}

std::optional<std::string> ParsedArgs::One(std::string_view name) const {
  for (auto it = options.rbegin(); it != options.rend(); ++it)
    if (it->first == name) return it->second;
  return std::nullopt;
}

bool ParsedArgs::Has(std::string_view name) const {
  return std::any_of(options.begin(), options.end(), [&](const auto& o) { return o.first == name; });
}

std::optional<std::string> PositionalsError(const ParsedArgs& args, std::size_t expected, std::string_view usage) {
  if (args.positionals.size() == expected) return std::nullopt;
  if (args.positionals.size() > expected)
    return "unexpected word '" + args.positionals[expected] + "': " + std::string(usage);
  return std::string(usage);
}

std::optional<ParsedArgs> ParseArgs(const std::vector<std::string>& words, const std::vector<std::string>& valued,
                                    const std::vector<std::string>& flags, std::string& error) {
  ParsedArgs parsed;
  auto contains = [](const std::vector<std::string>& list, const std::string& w) {
    return std::find(list.begin(), list.end(), w) != list.end();
  };
  for (std::size_t i = 0; i < words.size(); ++i) {
    const std::string& w = words[i];
    if (w.rfind("--", 0) != 0) {
      parsed.positionals.push_back(w);
    } else if (contains(flags, w)) {
      parsed.options.emplace_back(w, "");
    } else if (contains(valued, w)) {
      if (i + 1 >= words.size()) {
        error = "option " + w + " needs a value";
        return std::nullopt;
      }
      parsed.options.emplace_back(w, words[++i]);
    } else {
      error = "unknown option '" + w + "'";
      return std::nullopt;
    }
  }
  return parsed;
}

}  // namespace orchidlamp::cli
