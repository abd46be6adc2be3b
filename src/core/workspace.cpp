#include "core/workspace.h"

#include <vector>

#include "core/file_io.h"
#include "core/ipd_format.h"
#include "core/paths.h"
#include "core/record_range.h"

namespace orchidlamp {
namespace {

// The status bar's kinds, in the order the details panel lists them.
constexpr std::array<std::pair<Kind, std::string_view>, 7> kStatusCounts = {{
    {Kind::SmsMessages, " SMS Messages, "},
    {Kind::AddressBookAll, " Address Book (All), "},
    {Kind::Tasks, " Tasks, "},
    {Kind::Memos, " Memos, "},
    {Kind::CalendarAll, " Calendar, "},
    {Kind::PhoneCallLogs, " Phone Calls, "},
    {Kind::ServiceBook, " Service Book"},
}};

constexpr std::size_t kProgressEvery = 4096;

}  // namespace

Workspace::Workspace(const RecordLabeller& labeller, Clock clock) : labeller_(labeller), clock_(std::move(clock)) {
  ResetTree(std::string(kNoFileRootText));
  status_.main = std::string(kNoFileHint);
}

std::string Workspace::Caption() const {
  return file_.path.empty() ? std::string(kWindowCaption) : std::string(kWindowCaption) + " - " + file_.path;
}

void Workspace::ResetTree(std::string rootText) {
  tree_.Clear();
  tree_.SetLabelSource(&labeller_, file_.View());
  tree_.Add(kNoNode, std::string(kRootKey), std::move(rootText), ImageKey::sheet);
  selected = kNoNode;
}

Status Workspace::Load(const std::string& path, const StoredSettings& settings, Progress* progress,
                       TreeScope scope) {
  auto bytes = ReadWholeFile(path);
  if (!bytes) return bytes.failure();
  file_.path = path;
  file_.bytes = std::move(bytes.value());
  ResetTree(path);
  status_ = {};
  settings_ = DeriveSettings(settings);
  menus_ = {};
  for (int k = static_cast<int>(Kind::SmsMessages); k < kKindCount; ++k) slots_[static_cast<std::size_t>(k)] = -1;
  counters_ = {};
  Status loaded = LoadIndex(progress, scope);
  // A walk that stops part way keeps what it read: that part can be exported,
  // split or converted like a whole backup.
  if (tree_.size() >= 2) menus_.saveAs = menus_.manipulate = true;
  return loaded;
}

Status Workspace::LoadIndex(Progress* progress, TreeScope scope) {
  const ByteView bytes = file_.View();
  auto table = ReadNameTable(bytes);
  if (!table) return table.failure();

  const NodeId root = tree_.Root();
  std::vector<NodeId> databaseNodes(table->entries.size(), kNoNode);
  for (std::size_t i = 0; i < table->entries.size(); ++i) {
    const NameEntry& entry = table->entries[i];
    for (Kind kind : kNameMatchOrder)
      if (InfoOf(kind).name == entry.cleaned) slots_[static_cast<std::size_t>(kind)] = static_cast<int>(i);
    if (!KindByName(entry.cleaned) && entry.name.find("Option") != std::string::npos) continue;
    databaseNodes[i] = tree_.Add(root, std::to_string(i) + std::string(kDatabaseKeySuffix), entry.cleaned, ImageKey::None);
  }

  const bool records = scope == TreeScope::Records;
  if (records)
    ReserveRecordNodes(tree_, bytes, table->recordsStart, databaseNodes,
                       [&](std::uint32_t id) { return KindOfDatabase(id).has_value(); });

  std::size_t seen = 0;
  const RecordWalk walked = WalkRecords(bytes, table->recordsStart, [&](const RecordLocation& r) {
    if (++seen % kProgressEvery == 0) Report(progress, r.offset, bytes.size());
    const auto kind = KindOfDatabase(r.databaseId);
    if (!kind || r.databaseId >= databaseNodes.size() || databaseNodes[r.databaseId] == kNoNode) return;
    if (records) tree_.AddRecord(databaseNodes[r.databaseId], *kind, r.Span());
    ++counters_[static_cast<std::size_t>(*kind)];
    if (*kind == Kind::ServiceBook) menus_.servicebook = true;
  });
  status_.main = FileNameOf(file_.path);
  for (const auto& [kind, text] : kStatusCounts) status_.details += std::to_string(Counter(kind)) + std::string(text);
  if (!walked) return walked.status();
  Report(progress, bytes.size(), bytes.size());
  return Ok();
}

std::optional<Kind> Workspace::KindOfDatabase(std::uint32_t databaseIndex) const {
  for (Kind kind : kRecordSlotOrder)
    if (Slot(kind) == static_cast<std::int64_t>(databaseIndex)) return kind;
  return std::nullopt;
}

ByteView Workspace::Body(const RecordSpan& span) const {
  // A record shorter than its header has a span that ends before it starts; its
  // body is empty.
  if (span.last < span.first) return {};
  return CheckedRange(file_.View(), span.first, span.last);
}

std::string Workspace::OutputFolder() const {
  if (folders_.output.empty()) return FolderOf(file_.path);
  return JoinPath(folders_.output, "");
}

std::string Workspace::ProgramFolder() const { return JoinPath(folders_.program, ""); }

}  // namespace orchidlamp
