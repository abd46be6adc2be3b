#include "convert/desktop_backup_writer.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <optional>

#include "convert/desktop_backup_reader.h"
#include "convert/zip_archive.h"
#include "core/file_io.h"
#include "core/hex_text.h"
#include "core/ipd_format.h"
#include "core/paths.h"

namespace orchidlamp {
namespace {

constexpr std::string_view kDatabasesFolder = "Databases";
constexpr std::size_t kCopyChunk = std::size_t{1} << 20;

// Copies `from` into `to` (created or truncated) through one fixed buffer, so a
// file of any size costs the buffer. The texts are those of reading `from`
// whole and writing it out: a read error ends the copy where it stands.
Status CopyFile(const std::string& from, const std::string& to) {
  const int in = ::open(from.c_str(), O_RDONLY | O_CLOEXEC);
  if (in < 0) return SystemFailure("Cannot open", from);
  struct stat st {};
  if (::fstat(in, &st) != 0 || S_ISDIR(st.st_mode)) {
    if (S_ISDIR(st.st_mode)) errno = EISDIR;
    Failure failure = SystemFailure("Cannot open", from);
    ::close(in);
    return failure;
  }
  struct stat existing {};
  if (::stat(to.c_str(), &existing) == 0 && S_ISDIR(existing.st_mode)) {
    ::close(in);
    return Fail("Cannot write " + to + ": it is a folder");
  }
  int out = ::open(to.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_TRUNC, 0644);
  if (out < 0 && errno == EEXIST) out = ::open(to.c_str(), O_WRONLY | O_CLOEXEC | O_TRUNC);
  if (out < 0) {
    Failure failure = SystemFailure("Cannot write", to);
    ::close(in);
    return failure;
  }
  Bytes chunk(kCopyChunk);
  for (;;) {
    const ssize_t n = ::read(in, chunk.data(), chunk.size());
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) break;
    if (!WriteFully(out, ByteView(chunk).first(static_cast<std::size_t>(n)))) {
      Failure failure = SystemFailure("Cannot write", to);
      ::close(out);
      ::close(in);
      return failure;
    }
  }
  ::close(in);
  if (::close(out) != 0) return SystemFailure("Cannot write", to);
  return Ok();
}

// A replaced target is written whole or not at all: the copy goes beside it
// first and is renamed over it.
Status CopyToTarget(const std::string& from, const std::string& target) {
  const std::string partial = target + ".partial";
  if (Status copied = CopyFile(from, partial); !copied) {
    ::unlink(partial.c_str());
    return copied;
  }
  if (::rename(partial.c_str(), target.c_str()) != 0) {
    const std::string reason = FolderExists(target) ? "it is a folder" : std::strerror(errno);
    ::unlink(partial.c_str());
    return Fail("Cannot write " + target + ": " + reason);
  }
  return Ok();
}

Status WriteText(const std::string& path, const std::string& text) { return WriteTruncating(path, TextBytes(text)); }

// Whether the file at `path` holds exactly `bytes`, read through one buffer.
bool HoldsExactly(const std::string& path, ByteView bytes) {
  const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) return false;
  struct stat st {};
  bool same = ::fstat(fd, &st) == 0 && S_ISREG(st.st_mode) && static_cast<std::uint64_t>(st.st_size) == bytes.size();
  Bytes chunk(same ? std::min(kCopyChunk, bytes.size() + 1) : 0);
  std::size_t done = 0;
  while (same) {
    const ssize_t n = ::read(fd, chunk.data(), chunk.size());
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) {
      same = n == 0 && done == bytes.size();
      break;
    }
    const auto got = static_cast<std::size_t>(n);
    same = got <= bytes.size() - done && std::memcmp(chunk.data(), bytes.data() + done, got) == 0;
    done += got;
  }
  ::close(fd);
  return same;
}

// The open file as read again now. When it holds exactly the loaded bytes,
// they stand for it and no second copy is kept.
struct OpenFileBytes {
  std::optional<Bytes> read;
  ByteView loaded;

  ByteView View() const { return read ? ByteView(*read) : loaded; }
};

Result<OpenFileBytes> ReadOpenFile(const std::string& path, ByteView loaded) {
  if (!loaded.empty() && HoldsExactly(path, loaded)) return OpenFileBytes{std::nullopt, loaded};
  auto bytes = ReadWholeFile(path);
  if (!bytes) return bytes.failure();
  return OpenFileBytes{std::move(bytes.value()), {}};
}

// An entry's bytes straight from a view.
class ViewContent : public EntryContent {
 public:
  explicit ViewContent(ByteView bytes) : bytes_(bytes) {}
  std::uint64_t Size() const override { return bytes_.size(); }
  void Rewind() override { at_ = 0; }
  std::size_t Read(std::uint8_t* out, std::size_t n) override {
    const std::size_t take = std::min(n, bytes_.size() - at_);
    if (take > 0) std::memcpy(out, bytes_.data() + at_, take);
    at_ += take;
    return take;
  }

 private:
  ByteView bytes_;
  std::size_t at_ = 0;
};

// Walks the records as the desktop software's reader does, calling
// visit(const RecordLocation&) for each; fails on what it cannot walk and on a
// record of a database the name table does not list.
template <typename Visit>
Status WalkForSave(ByteView ipd, const NameTable& table, Visit&& visit) {
  const std::size_t count = table.entries.size();
  return WalkRecords(
             ipd, table.recordsStart,
             [&](const RecordLocation& r) -> Status {
               if (r.databaseId >= count)
                 return Fail("A record at offset " + std::to_string(r.offset) + " belongs to database " +
                             std::to_string(r.databaseId) + ", which the name table does not list");
               visit(r);
               return Ok();
             },
             MarkerSkip::ZeroThenOne)
      .status();
}

std::vector<DatabaseSummary> Summaries(const NameTable& table) {
  std::vector<DatabaseSummary> summaries;
  summaries.reserve(table.entries.size());
  // cleaned has every character below 32 removed, CR and LF included.
  for (const NameEntry& entry : table.entries) summaries.push_back({entry.cleaned, 0});
  return summaries;
}

}  // namespace

void DatContent::Rewind() {
  headAt_ = 0;
  run_ = 0;
  at_ = next_ = layout_.runs.empty() ? 0 : layout_.runs.front().first;
}

std::size_t DatContent::Read(std::uint8_t* out, std::size_t n) {
  std::size_t given = 0;
  const Bytes& head = layout_.head;
  if (headAt_ < head.size()) {
    given = std::min(n, head.size() - headAt_);
    std::memcpy(out, head.data() + headAt_, given);
    headAt_ += given;
  }
  const std::uint8_t id[2] = {static_cast<std::uint8_t>(layout_.k & 0xFF), static_cast<std::uint8_t>(layout_.k >> 8)};
  const auto& runs = layout_.runs;
  while (given < n && run_ < runs.size()) {
    const std::size_t end = runs[run_].second;
    if (at_ == end) {
      if (++run_ < runs.size()) at_ = next_ = runs[run_].first;
      continue;
    }
    const std::size_t take = std::min(n - given, end - at_);
    std::uint8_t* piece = out + given;
    std::memcpy(piece, ipd_.data() + at_, take);
    const std::size_t stop = at_ + take;
    // A record's id may straddle two reads: next_ is then one byte before at_.
    while (next_ < stop) {
      if (next_ >= at_) piece[next_ - at_] = id[0];
      if (next_ + 1 >= stop) break;
      piece[next_ + 1 - at_] = id[1];
      next_ += 6 + std::size_t{ReadLE32(ipd_, next_ + 2)};
    }
    given += take;
    at_ = stop;
  }
  return given;
}

Result<std::vector<DatabaseSummary>> LayOutDats(ByteView ipd, std::vector<DatLayout>& layouts, Progress* progress) {
  layouts.clear();
  auto table = ReadNameTable(ipd);
  if (!table) return table.failure();
  std::vector<DatabaseSummary> summaries = Summaries(table.value());
  const Bytes header = HexToBytes(IpdHeaderHex(1));
  layouts.resize(table->entries.size());
  for (std::size_t i = 0; i < layouts.size(); ++i) {
    DatLayout& dat = layouts[i];
    dat.head = header;
    Append(dat.head, table->entries[i].Bytes(ipd));
    dat.k = static_cast<std::uint32_t>(i + 1);
    dat.size = dat.head.size();
  }
  std::size_t done = 0;
  Status walked = WalkForSave(ipd, table.value(), [&](const RecordLocation& r) {
    ++summaries[r.databaseId].recordCount;
    DatLayout& dat = layouts[r.databaseId];
    dat.size += 6 + std::size_t{r.length};
    // Records of one database usually follow one another: one run holds them all.
    if (!dat.runs.empty() && dat.runs.back().second == r.offset) dat.runs.back().second = r.End();
    else dat.runs.emplace_back(r.offset, r.End());
    Report(progress, ++done, 0);
  });
  if (!walked) {
    layouts.clear();
    return walked.failure();
  }
  return summaries;
}

Result<std::vector<DatabaseSummary>> SummarizeForSave(ByteView ipd, std::vector<Bytes>* dats, Progress* progress) {
  if (dats) {
    std::vector<DatLayout> layouts;
    auto summaries = LayOutDats(ipd, layouts, progress);
    if (!summaries) return summaries;
    dats->assign(layouts.size(), Bytes());
    for (std::size_t i = 0; i < layouts.size(); ++i) {
      Bytes& dat = (*dats)[i];
      dat.resize(layouts[i].size);
      DatContent content(ipd, layouts[i]);
      dat.resize(content.Read(dat.data(), dat.size()));
    }
    return summaries;
  }
  auto table = ReadNameTable(ipd);
  if (!table) return table.failure();
  std::vector<DatabaseSummary> summaries = Summaries(table.value());
  std::size_t done = 0;
  Status walked = WalkForSave(ipd, table.value(), [&](const RecordLocation& r) {
    ++summaries[r.databaseId].recordCount;
    Report(progress, ++done, 0);
  });
  if (!walked) return walked.failure();
  return summaries;
}

Status WriteWindowsBackup(const std::string& ipdPath, const std::string& workFolder, const std::string& target,
                          Progress* progress, ByteView loaded) {
  std::vector<DatLayout> layouts;
  {
    auto ipd = ReadOpenFile(ipdPath, loaded);
    if (!ipd) return ipd.failure();
    auto summaries = LayOutDats(ipd->View(), layouts, progress);
    if (!summaries) return summaries.failure();
    if (summaries->size() > kMaxWindowsDatabases)
      return Fail("A Windows desktop backup holds at most " + std::to_string(kMaxWindowsDatabases) + " databases");
    if (Status s = WriteText(JoinPath(workFolder, kManifestXml), ManifestXml(summaries.value())); !s) return s;
    // Each .dat is deflated from the IPD as libzip reads it, never held whole.
    std::vector<DatContent> dats;
    dats.reserve(layouts.size());
    std::vector<EntryContent*> contents;
    for (const DatLayout& layout : layouts) contents.push_back(&dats.emplace_back(ipd->View(), layout));
    if (Status s = ZipBackup(workFolder, layouts.size(), SaveKind::WindowsBbb, contents); !s) return s;
  }
  return CopyToTarget(JoinPath(workFolder, kArchiveName), target);
}

Status WriteMacBackup(const std::string& ipdPath, const std::string& workFolder, const std::string& target,
                      Progress* progress, ByteView loaded) {
  {
    auto ipd = ReadOpenFile(ipdPath, loaded);
    if (!ipd) return ipd.failure();
    auto summaries = SummarizeForSave(ipd->View(), nullptr, progress);
    if (!summaries) return summaries.failure();
    if (Status s = WriteText(JoinPath(workFolder, kMacBackupXml), MacBackupXml(summaries.value())); !s) return s;
    ViewContent databases(ipd->View());
    if (Status s = ZipBackup(workFolder, summaries->size(), SaveKind::MacBbb, {&databases}); !s) return s;
  }
  return CopyToTarget(JoinPath(workFolder, kArchiveName), target);
}

Status ZipBackup(const std::string& workFolder, std::size_t databaseCount, SaveKind kind,
                 const std::vector<EntryContent*>& contents) {
  std::vector<ArchiveEntry> entries;
  const std::string xml(kind == SaveKind::WindowsBbb ? kManifestXml : kMacBackupXml);
  auto add = [&](const std::string& name) {
    const std::size_t i = entries.size();
    if (i < contents.size()) entries.push_back({name, JoinPath(workFolder, xml), contents[i]});
    else entries.push_back({name, JoinPath(workFolder, name)});
  };
  if (kind == SaveKind::WindowsBbb) {
    entries.reserve(databaseCount + 1);
    for (std::size_t k = 1; k <= databaseCount; ++k) add(std::string(kDatabasesFolder) + "/" + std::to_string(k) + ".dat");
  } else {
    add(std::string(kDatabasesFolder) + "/" + std::string(kMacDatabasesIpd));
  }
  entries.push_back({xml, JoinPath(workFolder, xml)});
  return CreateArchive(JoinPath(workFolder, kArchiveName), entries);
}

Result<Message> SaveBackupAs(const std::string& openPath, const std::string& target, SaveKind kind,
                             const Clock& clock, const std::string& tempRoot, Progress* progress,
                             ByteView loaded) {
  const Failure failed = Fail(std::string(kConvertError));
  if (target.empty() || openPath.empty()) return failed;
  auto work = CreateWorkFolder(tempRoot, clock);
  if (!work) return failed;
  Status saved = [&]() -> Status {
    try {
      switch (kind) {
        case SaveKind::WindowsBbb: return WriteWindowsBackup(openPath, work->folder, target, progress, loaded);
        case SaveKind::MacBbb: return WriteMacBackup(openPath, work->folder, target, progress, loaded);
        case SaveKind::Ipd: return CopyToTarget(openPath, target);
      }
    } catch (const WorkCancelled&) {
      RemoveFolderTree(work->folder);
      throw;
    }
    return Fail(std::string(kConvertError));
  }();
  RemoveFolderTree(work->folder);
  if (!saved) {
    // The fixed text stays; the reason goes behind it.
    Failure withReason = failed;
    if (saved.failure().message.text != kConvertError) withReason.message.detail = saved.failure().message.text;
    return withReason;
  }
  return Message{std::string(kSavedPrefix) + target, {}, MessageIcon::Information};
}

Result<Message> SaveAs(const Workspace& ws, const std::string& target, int filterIndex, Progress* progress) {
  if (filterIndex < 1 || filterIndex > 3) return Fail(std::string(kConvertError));
  return SaveBackupAs(ws.file().path, target, static_cast<SaveKind>(filterIndex), ws.clock(), SystemTempFolder(),
                      progress, ws.file().View());
}

}  // namespace orchidlamp
