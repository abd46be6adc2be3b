#include "export/migration.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <map>
#include <unordered_map>

#include "core/file_io.h"
#include "core/kinds.h"
#include "export/migrate_records.h"
#include "export/migrate_writers.h"

namespace orchidlamp {
namespace {

namespace fs = std::filesystem;

constexpr std::array<std::string_view, kMigrateKindCount> kKindNames = {
    "contacts", "calendar", "messages", "calls", "memos", "bookmarks", "autotext"};

// A database and its "- All" twin hold the same records under the same unique
// IDs; records of one family are written once.
enum class Twins { None, AddressBook, Calendar };

struct MigrateDatabaseRow {
  Kind database;
  MigrateKind kind;
  Twins twins;
  MigrateRecordFn read;
};

constexpr MigrateDatabaseRow kDatabases[] = {
    {Kind::AddressBook, MigrateKind::Contacts, Twins::AddressBook, MigrateContact},
    {Kind::AddressBookAll, MigrateKind::Contacts, Twins::AddressBook, MigrateContactNested},
    {Kind::Calendar, MigrateKind::Calendar, Twins::Calendar, MigrateAppointment},
    {Kind::CalendarAll, MigrateKind::Calendar, Twins::Calendar, MigrateAppointmentNested},
    {Kind::Tasks, MigrateKind::Calendar, Twins::None, MigrateTask},
    {Kind::SmsMessages, MigrateKind::Messages, Twins::None, MigrateSms},
    {Kind::PhoneCallLogs, MigrateKind::Calls, Twins::None, MigrateCall},
    {Kind::Memos, MigrateKind::Memos, Twins::None, MigrateMemo},
    {Kind::BrowserBookmarks, MigrateKind::Bookmarks, Twins::None, MigrateBookmark},
    {Kind::AutoText, MigrateKind::AutoText, Twins::None, MigrateAutoText},
};

const MigrateDatabaseRow* RowForDatabase(std::string_view name) {
  const auto kind = KindByName(name);
  if (!kind) return nullptr;
  for (const MigrateDatabaseRow& row : kDatabases)
    if (row.database == *kind) return &row;
  return nullptr;
}

std::size_t Index(MigrateKind kind) { return static_cast<std::size_t>(kind); }

Failure IoFailure(const std::string& what, const std::string& path, const std::error_code& error) {
  return Fail(what + " " + path + ": " + error.message());
}

// One output: its final name and what goes there, a file or a folder of files.
struct Output {
  Output(MigrateKind k, std::string n, std::size_t c) : kind(k), name(std::move(n)), count(c) {}
  MigrateKind kind;
  std::string name;
  std::size_t count = 0;
  std::string content;
  std::vector<std::pair<std::string, std::string>> folderFiles;
  bool isFolder = false;
  std::string temp;  // where it was built
};

std::string TempName(const std::string& outDir, const std::string& name) {
  std::string base = name;
  if (!base.empty() && base.back() == '/') base.pop_back();
  return outDir + "/." + base + ".partial";
}

Status BuildUnderTempName(Output& out, const std::string& outDir);

// The user knows the file by its final name, not by the one it is built under.
Status BuildOutput(Output& out, const std::string& outDir) {
  Status built = BuildUnderTempName(out, outDir);
  if (built) return built;
  std::string text = built.failure().message.text;
  std::string target = outDir + "/" + out.name;
  if (out.isFolder) target.pop_back();
  for (std::size_t at; (at = text.find(out.temp)) != std::string::npos;) text.replace(at, out.temp.size(), target);
  return Fail(text);
}

Status BuildUnderTempName(Output& out, const std::string& outDir) {
  out.temp = TempName(outDir, out.name);
  std::error_code error;
  fs::remove_all(out.temp, error);
  if (!out.isFolder) return WriteTruncating(out.temp, TextBytes(out.content));
  if (!fs::create_directory(out.temp, error) && error) return IoFailure("Cannot create folder", out.temp, error);
  for (const auto& [file, text] : out.folderFiles)
    if (Status s = WriteTruncating(out.temp + "/" + file, TextBytes(text)); !s) return s;
  return Ok();
}

// Puts a built output in place of whatever stood there.
Status Publish(const Output& out, const std::string& outDir) {
  std::string target = outDir + "/" + out.name;
  if (out.isFolder) target.pop_back();
  std::error_code error;
  if (out.isFolder && fs::is_directory(target, error)) {
    const std::string old = TempName(outDir, out.name) + ".old";
    fs::remove_all(old, error);
    fs::rename(target, old, error);
    if (error) return IoFailure("Cannot write", target, error);
    fs::rename(out.temp, target, error);
    if (error) return IoFailure("Cannot write", target, error);
    fs::remove_all(old, error);
    return Ok();
  }
  if (!out.isFolder && fs::is_directory(target, error)) return Fail("Cannot write " + target + ": it is a folder");
  fs::rename(out.temp, target, error);
  if (error) return IoFailure("Cannot write", target, error);
  return Ok();
}

void RemoveTemps(const std::vector<Output>& outputs) {
  std::error_code error;
  for (const Output& out : outputs)
    if (!out.temp.empty()) fs::remove_all(out.temp, error);
}

Result<MigrationReport> MigrateRecords(const Workspace& ws, const MigrationOptions& options, Progress* progress,
                                       const CancelCheck& cancelled);

}  // namespace

std::string_view MigrateKindName(MigrateKind kind) { return kKindNames[Index(kind)]; }

std::optional<MigrateKind> MigrateKindNamed(std::string_view name) {
  for (std::size_t i = 0; i < kKindNames.size(); ++i)
    if (kKindNames[i] == name) return static_cast<MigrateKind>(i);
  return std::nullopt;
}

Result<MigrationReport> Migrate(const Workspace& ws, const MigrationOptions& options, Progress* progress,
                                const CancelCheck& cancelled) {
  return Guarded([&] { return MigrateRecords(ws, options, progress, cancelled); });
}

namespace {

using KindFlags = std::array<bool, kMigrateKindCount>;

struct Collected {
  MigratedBackup backup;
  std::array<std::size_t, kMigrateKindCount> skipped{};
  bool cancelled = false;
};

// Reads every record of the databases whose kind is in `read`, in tree order,
// each record of a twin family once.
Collected CollectRecords(const Workspace& ws, const KindFlags& read, const CodePage& codePage, Progress* progress,
                         const CancelCheck& cancelled) {
  const DatabaseTree& tree = ws.tree();
  std::vector<std::pair<NodeId, const MigrateDatabaseRow*>> databases;
  std::size_t total = 0;
  if (tree.Root() != kNoNode) {
    tree.ForEachChild(tree.Root(), [&](NodeId db) {
      const MigrateDatabaseRow* row = RowForDatabase(tree.Text(db));
      if (!row || !read[Index(row->kind)]) return;
      databases.emplace_back(db, row);
      total += static_cast<std::size_t>(tree.ChildCount(db));
    });
  }
  Collected out;
  MigrationContext context{codePage, out.backup};
  std::map<Twins, std::unordered_map<std::uint32_t, NodeId>> seen;
  std::size_t done = 0;
  for (const auto& entry : databases) {
    // Named copies: a lambda may not capture structured bindings in every compiler.
    const NodeId db = entry.first;
    const MigrateDatabaseRow* row = entry.second;
    tree.ForEachChild(db, [&](NodeId record) {
      if (out.cancelled || (cancelled && (out.cancelled = cancelled()))) return;
      Report(progress, ++done, total);
      const auto tag = tree.Tag(record);
      if (!tag) return;
      const ByteView body = ws.Body(*tag);
      if (row->twins != Twins::None) {
        if (const auto uid = RecordUid(body)) {
          const auto [at, fresh] = seen[row->twins].emplace(*uid, db);
          if (!fresh && at->second != db) return;
        }
      }
      if (!row->read(body, context)) ++out.skipped[Index(row->kind)];
    });
  }
  return out;
}

// The content of every wanted kind that has records, in the table's order.
Result<std::vector<Output>> BuildContents(const MigratedBackup& backup, const KindFlags& wanted, std::time_t now) {
  const ContactNames names(backup.contacts);
  std::vector<Output> outputs;
  using Build = std::function<Result<std::string>()>;
  auto add = [&](MigrateKind kind, std::string name, std::size_t count, const Build& build) -> Status {
    if (!wanted[Index(kind)] || count == 0) return Ok();
    auto content = build();
    if (!content) return content.failure();
    Output& out = outputs.emplace_back(kind, std::move(name), count);
    out.content = std::move(content.value());
    return Ok();
  };
  Status built = add(MigrateKind::Contacts, "contacts.vcf", backup.contacts.size(),
                     [&]() -> Result<std::string> { return VCardFile(backup.contacts); });
  if (built) built = add(MigrateKind::Calendar, "calendar.ics", backup.events.size() + backup.tasks.size(),
                         [&] { return ICalendarFile(backup.events, backup.tasks, now); });
  if (built) built = add(MigrateKind::Messages, "messages.xml", backup.messages.size(),
                         [&] { return MessagesXml(backup.messages, names); });
  if (built) built = add(MigrateKind::Calls, "calls.xml", backup.calls.size(),
                         [&] { return CallsXml(backup.calls, names); });
  if (built && wanted[Index(MigrateKind::Memos)] && !backup.memos.empty()) {
    Output& memos = outputs.emplace_back(MigrateKind::Memos, "memos/", backup.memos.size());
    memos.isFolder = true;
    memos.folderFiles = MemoFiles(backup.memos);
  }
  if (built) built = add(MigrateKind::Bookmarks, "bookmarks.html", backup.bookmarks.size(),
                         [&]() -> Result<std::string> { return BookmarksHtml(backup.bookmarks); });
  if (built) built = add(MigrateKind::AutoText, "autotext.csv", backup.autoTexts.size(),
                         [&]() -> Result<std::string> { return AutoTextCsv(backup.autoTexts); });
  if (!built) return built.failure();
  return outputs;
}

// Builds every output under its temporary name, then puts them all in place;
// a failure or a cancel before that removes what was built.
Status WriteOutputs(std::vector<Output>& outputs, const std::string& outDir, const CancelCheck& cancelled,
                    MigrationReport& report) {
  std::error_code error;
  fs::create_directories(outDir, error);
  if (error) return IoFailure("Cannot create folder", outDir, error);
  for (Output& out : outputs) {
    if (cancelled && cancelled()) {
      RemoveTemps(outputs);
      report.cancelled = true;
      return Ok();
    }
    if (Status s = BuildOutput(out, outDir); !s) {
      RemoveTemps(outputs);
      return s;
    }
  }
  for (const Output& out : outputs) {
    if (Status s = Publish(out, outDir); !s) {
      RemoveTemps(outputs);
      return s;
    }
    report.files.push_back({out.name, out.count});
  }
  return Ok();
}

Result<MigrationReport> MigrateRecords(const Workspace& ws, const MigrationOptions& options, Progress* progress,
                                       const CancelCheck& cancelled) {
  auto codePage = CodePage::Open(options.charset);
  if (!codePage) return codePage.failure();
  KindFlags wanted{};
  for (std::size_t i = 0; i < wanted.size(); ++i) wanted[i] = options.only.empty();
  for (MigrateKind kind : options.only) wanted[Index(kind)] = true;
  // Messages and calls name their contacts, so the address book is read for them too.
  KindFlags read = wanted;
  read[Index(MigrateKind::Contacts)] = wanted[Index(MigrateKind::Contacts)] || wanted[Index(MigrateKind::Messages)] ||
                                       wanted[Index(MigrateKind::Calls)];

  MigrationReport report;
  Collected collected = CollectRecords(ws, read, codePage.value(), progress, cancelled);
  if (collected.cancelled) {
    report.cancelled = true;
    return report;
  }
  for (std::size_t i = 0; i < kMigrateKindCount; ++i)
    if (collected.skipped[i] > 0 && wanted[i]) report.skipped.push_back({kKindNames[i], collected.skipped[i]});
  auto outputs = BuildContents(collected.backup, wanted, ws.clock()());
  if (!outputs) return outputs.failure();
  if (outputs->empty()) return report;
  if (Status written = WriteOutputs(outputs.value(), options.outDir, cancelled, report); !written)
    return written.failure();
  return report;
}

}  // namespace
}  // namespace orchidlamp
