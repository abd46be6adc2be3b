#include "export/migration.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <memory>
#include <vector>

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
  int part;  // where in its kind's file: calendar.ics holds every appointment before the first task
  MigrateRecordFn read;
};

constexpr MigrateDatabaseRow kDatabases[] = {
    {Kind::AddressBook, MigrateKind::Contacts, Twins::AddressBook, 0, MigrateContact},
    {Kind::AddressBookAll, MigrateKind::Contacts, Twins::AddressBook, 0, MigrateContactNested},
    {Kind::Calendar, MigrateKind::Calendar, Twins::Calendar, 0, MigrateAppointment},
    {Kind::CalendarAll, MigrateKind::Calendar, Twins::Calendar, 0, MigrateAppointmentNested},
    {Kind::Tasks, MigrateKind::Calendar, Twins::None, 1, MigrateTask},
    {Kind::SmsMessages, MigrateKind::Messages, Twins::None, 0, MigrateSms},
    {Kind::PhoneCallLogs, MigrateKind::Calls, Twins::None, 0, MigrateCall},
    {Kind::Memos, MigrateKind::Memos, Twins::None, 0, MigrateMemo},
    {Kind::BrowserBookmarks, MigrateKind::Bookmarks, Twins::None, 0, MigrateBookmark},
    {Kind::AutoText, MigrateKind::AutoText, Twins::None, 0, MigrateAutoText},
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

std::string TempName(const std::string& outDir, const std::string& name) {
  std::string base = name;
  if (!base.empty() && base.back() == '/') base.pop_back();
  return outDir + "/." + base + ".partial";
}

std::string TargetName(const std::string& outDir, const std::string& name) {
  std::string target = outDir + "/" + name;
  if (target.back() == '/') target.pop_back();
  return target;
}

// The user knows an output by its final name, not by the one it is built under.
Failure UnderFinalName(Failure failure, const std::string& temp, const std::string& target) {
  std::string text = failure.message.text;
  for (std::size_t at; (at = text.find(temp)) != std::string::npos;) text.replace(at, temp.size(), target);
  return Fail(text);
}

// Puts a built output in place of whatever stood there.
Status Publish(const std::string& temp, const std::string& target, bool isFolder) {
  std::error_code error;
  if (isFolder && fs::is_directory(target, error)) {
    const std::string old = temp + ".old";
    fs::remove_all(old, error);
    fs::rename(target, old, error);
    if (error) return IoFailure("Cannot write", target, error);
    fs::rename(temp, target, error);
    if (error) return IoFailure("Cannot write", target, error);
    fs::remove_all(old, error);
    return Ok();
  }
  if (!isFolder && fs::is_directory(target, error)) return Fail("Cannot write " + target + ": it is a folder");
  fs::rename(temp, target, error);
  if (error) return IoFailure("Cannot write", target, error);
  return Ok();
}

// The output folder, made when the first output needs it, and the outputs
// built under temporary names. Unless the run puts its outputs in place, they
// are removed when the run ends, by a failure, a cancel or a throw; so is the
// folder when the run made it and no write failed in it.
class RunFolder {
 public:
  explicit RunFolder(std::string path) : path_(std::move(path)) {}
  ~RunFolder() {
    std::error_code error;
    for (const std::string& temp : temps_) fs::remove_all(temp, error);
    if (created_ && !keep_) fs::remove(path_, error);  // only while it is empty
  }
  RunFolder(const RunFolder&) = delete;
  RunFolder& operator=(const RunFolder&) = delete;

  Status Prepare() {
    if (prepared_) return Ok();
    std::error_code error;
    const bool existed = fs::is_directory(path_, error);
    fs::create_directories(path_, error);
    if (error) return IoFailure("Cannot create folder", path_, error);
    prepared_ = true;
    created_ = !existed;
    return Ok();
  }
  std::string Temp(const std::string& name) { return temps_.emplace_back(TempName(path_, name)); }
  void Published() { temps_.clear(); }
  void KeepFolder() { keep_ = true; }

 private:
  std::string path_;
  std::vector<std::string> temps_;
  bool prepared_ = false, created_ = false, keep_ = false;
};

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

struct Database {
  NodeId node;
  const MigrateDatabaseRow* row;
};

// The database each unique ID of a twin family was first read from. Sized once
// for the family's records, so it never grows while they are read.
class FirstOwners {
 public:
  explicit FirstOwners(std::size_t records) {
    std::size_t size = 16;
    while (size < 2 * records) size *= 2;
    slots_.resize(size);
  }
  // The database the ID was first seen in; `db` when this is its first time.
  NodeId Owner(std::uint32_t uid, NodeId db) {
    const std::size_t mask = slots_.size() - 1;
    for (std::size_t at = (uid * std::uint64_t{0x9E3779B97F4A7C15}) >> 32 & mask;; at = (at + 1) & mask) {
      Slot& slot = slots_[at];
      if (slot.db == kNoNode) slot = {uid, db};
      if (slot.uid == uid) return slot.db;
    }
  }

 private:
  struct Slot {
    std::uint32_t uid = 0;
    NodeId db = kNoNode;  // kNoNode: empty
  };
  std::vector<Slot> slots_;
};

// The walk over the chosen databases' records, kind by kind.
class RecordWalk {
 public:
  RecordWalk(const Workspace& ws, const KindFlags& read, const CodePage& codePage, Progress* progress,
             const CancelCheck& cancelled)
      : ws_(ws), codePage_(codePage), progress_(progress), cancelled_(cancelled) {
    const DatabaseTree& tree = ws.tree();
    if (tree.Root() == kNoNode) return;
    tree.ForEachChild(tree.Root(), [&](NodeId db) {
      const MigrateDatabaseRow* row = RowForDatabase(tree.Text(db));
      if (!row || !read[Index(row->kind)]) return;
      databases_.push_back({db, row});
      total_ += static_cast<std::size_t>(tree.ChildCount(db));
    });
    // A file's parts in the table's order, each part's databases in tree order.
    std::stable_sort(databases_.begin(), databases_.end(),
                     [](const Database& a, const Database& b) { return a.row->part < b.row->part; });
  }

  bool cancelled() const { return stopped_; }
  std::size_t skipped(MigrateKind kind) const { return skipped_[Index(kind)]; }

  // Hands every decodable record of the kind's databases to `sink`, each record
  // of a twin family once. Polls the cancel check and reports progress.
  void Read(MigrateKind kind, MigrationSink& sink) {
    MigrationContext context{codePage_, &sink};
    Visit(kind, true, [&](const MigrateDatabaseRow& row, ByteView body) {
      if (!row.read(body, context)) ++skipped_[Index(kind)];
    });
  }

  // The number of records Read would hand over, without converting any.
  std::size_t Count(MigrateKind kind) {
    std::size_t count = 0;
    MigrationContext context{codePage_, nullptr};
    Visit(kind, false, [&](const MigrateDatabaseRow& row, ByteView body) { count += row.read(body, context) ? 1 : 0; });
    return count;
  }

 private:
  // visit(row, body) for every record of the kind, twins once.
  template <class Fn>
  void Visit(MigrateKind kind, bool reading, Fn&& visit) {
    const DatabaseTree& tree = ws_.tree();
    std::size_t twins = 0;
    for (const Database& database : databases_)
      if (database.row->kind == kind && database.row->twins != Twins::None)
        twins += static_cast<std::size_t>(tree.ChildCount(database.node));
    // One family per kind: the table's twins never mix kinds.
    FirstOwners seen(twins);
    for (const Database& database : databases_) {
      if (database.row->kind != kind) continue;
      const NodeId db = database.node;
      const MigrateDatabaseRow& row = *database.row;
      tree.ForEachChild(db, [&](NodeId record) {
        if (reading) {
          if (stopped_ || (cancelled_ && (stopped_ = cancelled_()))) return;
          Report(progress_, ++done_, total_);
        }
        const auto tag = tree.Tag(record);
        if (!tag) return;
        const ByteView body = ws_.Body(*tag);
        if (row.twins != Twins::None) {
          if (const auto uid = RecordUid(body); uid && seen.Owner(*uid, db) != db) return;
        }
        visit(row, body);
      });
    }
  }

  const Workspace& ws_;
  const CodePage& codePage_;
  Progress* progress_;
  const CancelCheck& cancelled_;
  std::vector<Database> databases_;
  std::size_t total_ = 0, done_ = 0;
  std::array<std::size_t, kMigrateKindCount> skipped_{};
  bool stopped_ = false;
};

// The contacts' pass feeds the names the message and call files look up, and
// contacts.vcf when it is wanted.
class ContactsSink final : public MigrationSink {
 public:
  ContactsSink(MigrationSink* vcard, ContactNames* names) : vcard_(vcard), names_(names) {}
  void Add(const MigratedContact& contact) override {
    if (names_) names_->Add(contact);
    if (vcard_) vcard_->Add(contact);
  }

 private:
  MigrationSink* vcard_;
  ContactNames* names_;
};

constexpr std::array<std::string_view, kMigrateKindCount> kFileNames = {
    "contacts.vcf", "calendar.ics", "messages.xml", "calls.xml", "memos/", "bookmarks.html", "autotext.csv"};

Result<MigrationReport> MigrateRecords(const Workspace& ws, const MigrationOptions& options, Progress* progress,
                                       const CancelCheck& cancelled) {
  auto codePage = CodePage::Open(options.charset);
  if (!codePage) return codePage.failure();
  KindFlags wanted{};
  for (std::size_t i = 0; i < wanted.size(); ++i) wanted[i] = options.only.empty();
  for (MigrateKind kind : options.only) wanted[Index(kind)] = true;
  // Messages and calls name their contacts, so the address book is read for them too.
  const bool needNames = wanted[Index(MigrateKind::Messages)] || wanted[Index(MigrateKind::Calls)];
  KindFlags read = wanted;
  read[Index(MigrateKind::Contacts)] = wanted[Index(MigrateKind::Contacts)] || needNames;

  MigrationReport report;
  RunFolder folder(options.outDir);
  const PrepareFolder prepare = [&folder] { return folder.Prepare(); };
  RecordWalk walk(ws, read, codePage.value(), progress, cancelled);
  ContactNames names;
  struct Built {
    MigrateKind kind;
    std::string temp;
    std::size_t count;
  };
  std::vector<Built> built;
  for (std::size_t i = 0; i < kMigrateKindCount; ++i) {
    if (!read[i]) continue;
    const auto kind = static_cast<MigrateKind>(i);
    const std::string name(kFileNames[i]);
    const std::string temp = wanted[i] ? folder.Temp(name) : std::string();
    std::unique_ptr<MigrationOutput> output;
    switch (kind) {
      case MigrateKind::Contacts:
        if (wanted[i]) output = std::make_unique<VCardFile>(temp, prepare);
        break;
      case MigrateKind::Calendar: output = std::make_unique<ICalendarFile>(temp, prepare, ws.clock()()); break;
      case MigrateKind::Messages:
        output = std::make_unique<MessagesXmlFile>(temp, prepare, walk.Count(kind), names);
        break;
      case MigrateKind::Calls: output = std::make_unique<CallsXmlFile>(temp, prepare, walk.Count(kind), names); break;
      case MigrateKind::Memos: output = std::make_unique<MemoFolder>(temp, prepare); break;
      case MigrateKind::Bookmarks: output = std::make_unique<BookmarksFile>(temp, prepare); break;
      case MigrateKind::AutoText: output = std::make_unique<AutoTextFile>(temp, prepare); break;
    }
    if (kind == MigrateKind::Contacts) {
      ContactsSink sink(output.get(), needNames ? &names : nullptr);
      walk.Read(kind, sink);
    } else {
      walk.Read(kind, *output);
    }
    if (walk.cancelled()) {
      report.cancelled = true;
      return report;
    }
    if (!output) continue;
    if (Status finished = output->Finish(); !finished) {
      folder.KeepFolder();
      return UnderFinalName(finished.failure(), temp, TargetName(options.outDir, name));
    }
    if (output->count() > 0) built.push_back({kind, temp, output->count()});
  }
  for (std::size_t i = 0; i < kMigrateKindCount; ++i)
    if (walk.skipped(static_cast<MigrateKind>(i)) > 0 && wanted[i])
      report.skipped.push_back({kKindNames[i], walk.skipped(static_cast<MigrateKind>(i))});
  if (cancelled && !built.empty() && cancelled()) {
    report.cancelled = true;
    return report;
  }
  for (const Built& b : built) {
    const std::string name(kFileNames[Index(b.kind)]);
    if (Status s = Publish(b.temp, TargetName(options.outDir, name), name.back() == '/'); !s) {
      folder.KeepFolder();
      return s.failure();
    }
    report.files.push_back({name, b.count});
  }
  folder.Published();
  return report;
}

}  // namespace
}  // namespace orchidlamp
