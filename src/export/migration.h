#pragma once

// The migration export: the backup's contacts, appointments, tasks, messages,
// calls, memos, bookmarks and AutoText written in the formats today's phones,
// mail clients, calendars and browsers import, with every character and every
// instant intact. It reads the open workspace and changes nothing in it.

#include <array>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/result.h"
#include "core/progress.h"
#include "core/workspace.h"
#include "export/migrate_text.h"

namespace orchidlamp {

// The files, in the order they are written and listed.
enum class MigrateKind { Contacts, Calendar, Messages, Calls, Memos, Bookmarks, AutoText };
inline constexpr std::size_t kMigrateKindCount = 7;

// "contacts", "calendar", "messages", "calls", "memos", "bookmarks", "autotext".
std::string_view MigrateKindName(MigrateKind kind);
std::optional<MigrateKind> MigrateKindNamed(std::string_view name);

struct MigrationOptions {
  std::string outDir;
  std::string charset = std::string(kDefaultMigrateCharset);  // the code page of 8-bit text
  std::vector<MigrateKind> only;                             // empty: every kind
};

struct MigratedFile {
  std::string name;   // "contacts.vcf", "memos/", ...
  std::size_t count;  // records written
};

struct MigrationSkip {
  std::string_view kind;  // a MigrateKindName
  std::size_t count;
};

struct MigrationReport {
  std::vector<MigratedFile> files;   // in the kinds' order
  std::vector<MigrationSkip> skipped;  // kinds with records that could not be decoded
  bool cancelled = false;            // then nothing was written
};

// Polled between records; true stops the run.
using CancelCheck = std::function<bool()>;

// Writes every chosen kind that has records into options.outDir (created when
// missing). Files are built under temporary names and renamed into place only
// when all are complete, so a failure or a cancel leaves no file of this run;
// existing files of the same names are replaced whole. Failures carry the
// system's reason.
Result<MigrationReport> Migrate(const Workspace& ws, const MigrationOptions& options, Progress* progress = nullptr,
                                const CancelCheck& cancelled = {});

}  // namespace orchidlamp
