#include "convert/desktop_backup_writer.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "convert/desktop_backup_reader.h"
#include "convert/zip_archive.h"
#include "core/file_io.h"
#include "core/hex_text.h"
#include "core/ipd_format.h"
#include "core/paths.h"

namespace orchidlamp {
namespace {

constexpr std::string_view kDatabasesFolder = "Databases";

// A replaced target is written whole or not at all: the copy goes beside it
// first and is renamed over it.
Status CopyToTarget(const std::string& from, const std::string& target) {
  auto bytes = ReadWholeFile(from);
  if (!bytes) return bytes.failure();
  const std::string partial = target + ".partial";
  if (Status written = WriteTruncating(partial, bytes.value()); !written) {
    ::unlink(partial.c_str());
    return written;
  }
  if (::rename(partial.c_str(), target.c_str()) != 0) {
    const std::string reason = FolderExists(target) ? "it is a folder" : std::strerror(errno);
    ::unlink(partial.c_str());
    return Fail("Cannot write " + target + ": " + reason);
  }
  return Ok();
}

Status WriteText(const std::string& path, const std::string& text) { return WriteTruncating(path, TextBytes(text)); }

}  // namespace

namespace {

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

}  // namespace

Result<std::vector<DatabaseSummary>> SummarizeForSave(ByteView ipd, std::vector<Bytes>* dats, Progress* progress) {
  auto table = ReadNameTable(ipd);
  if (!table) return table.failure();
  const std::size_t count = table->entries.size();
  std::vector<DatabaseSummary> summaries;
  summaries.reserve(count);
  // cleaned has every character below 32 removed, CR and LF included.
  for (const NameEntry& entry : table->entries) summaries.push_back({entry.cleaned, 0});

  // The counts and each .dat's size first, so every .dat is one buffer filled once.
  const Bytes header = HexToBytes(IpdHeaderHex(1));
  std::vector<std::size_t> datSizes(count, 0);
  for (std::size_t i = 0; i < count; ++i) datSizes[i] = header.size() + table->entries[i].Bytes(ipd).size();
  std::size_t done = 0;
  Status walked = WalkForSave(ipd, table.value(), [&](const RecordLocation& r) {
    ++summaries[r.databaseId].recordCount;
    datSizes[r.databaseId] += 6 + std::size_t{r.length};
    Report(progress, ++done, 0);
  });
  if (!walked) return walked.failure();
  if (!dats) return summaries;

  dats->assign(count, Bytes());
  for (std::size_t i = 0; i < count; ++i) {
    Bytes& dat = (*dats)[i];
    dat.reserve(datSizes[i]);
    PreferHugePages(dat.data(), dat.capacity());
    dat.assign(header.begin(), header.end());
    Append(dat, table->entries[i].Bytes(ipd));
  }
  (void)WalkForSave(ipd, table.value(), [&](const RecordLocation& r) {
    Bytes& dat = (*dats)[r.databaseId];
    const std::uint32_t k = r.databaseId + 1;
    dat.push_back(static_cast<std::uint8_t>(k & 0xFF));
    dat.push_back(static_cast<std::uint8_t>(k >> 8));
    Append(dat, r.Whole(ipd).subspan(2));
  });
  return summaries;
}

Status WriteWindowsBackup(const std::string& ipdPath, const std::string& workFolder, const std::string& target,
                          Progress* progress) {
  auto ipd = ReadWholeFile(ipdPath);
  if (!ipd) return ipd.failure();
  const std::string databases = JoinPath(workFolder, kDatabasesFolder);
  if (Status s = CreateFolder(databases); !s) return s;
  std::vector<Bytes> dats;
  auto summaries = SummarizeForSave(ipd.value(), &dats, progress);
  if (!summaries) return summaries.failure();
  if (summaries->size() > kMaxWindowsDatabases)
    return Fail("A Windows desktop backup holds at most " + std::to_string(kMaxWindowsDatabases) + " databases");
  for (std::size_t i = 0; i < dats.size(); ++i)
    if (Status s = WriteTruncating(JoinPath(databases, std::to_string(i + 1) + ".dat"), dats[i]); !s) return s;
  if (Status s = WriteText(JoinPath(workFolder, kManifestXml), ManifestXml(summaries.value())); !s) return s;
  if (Status s = ZipBackup(workFolder, dats.size(), SaveKind::WindowsBbb); !s) return s;
  return CopyToTarget(JoinPath(workFolder, kArchiveName), target);
}

Status WriteMacBackup(const std::string& ipdPath, const std::string& workFolder, const std::string& target,
                      Progress* progress) {
  auto ipd = ReadWholeFile(ipdPath);
  if (!ipd) return ipd.failure();
  const std::string databases = JoinPath(workFolder, kDatabasesFolder);
  if (Status s = CreateFolder(databases); !s) return s;
  if (Status s = WriteTruncating(JoinPath(databases, kMacDatabasesIpd), ipd.value()); !s) return s;
  auto summaries = SummarizeForSave(ipd.value(), nullptr, progress);
  if (!summaries) return summaries.failure();
  if (Status s = WriteText(JoinPath(workFolder, kMacBackupXml), MacBackupXml(summaries.value())); !s) return s;
  if (Status s = ZipBackup(workFolder, summaries->size(), SaveKind::MacBbb); !s) return s;
  return CopyToTarget(JoinPath(workFolder, kArchiveName), target);
}

Status ZipBackup(const std::string& workFolder, std::size_t databaseCount, SaveKind kind) {
  std::vector<ArchiveEntry> entries;
  auto add = [&](const std::string& name) { entries.push_back({name, JoinPath(workFolder, name)}); };
  if (kind == SaveKind::WindowsBbb) {
    entries.reserve(databaseCount + 1);
    for (std::size_t k = 1; k <= databaseCount; ++k) add(std::string(kDatabasesFolder) + "/" + std::to_string(k) + ".dat");
    add(std::string(kManifestXml));
  } else {
    add(std::string(kDatabasesFolder) + "/" + std::string(kMacDatabasesIpd));
    add(std::string(kMacBackupXml));
  }
  return CreateArchive(JoinPath(workFolder, kArchiveName), entries);
}

Result<Message> SaveBackupAs(const std::string& openPath, const std::string& target, SaveKind kind,
                             const Clock& clock, const std::string& tempRoot, Progress* progress) {
  const Failure failed = Fail(std::string(kConvertError));
  if (target.empty() || openPath.empty()) return failed;
  auto work = CreateWorkFolder(tempRoot, clock);
  if (!work) return failed;
  Status saved = [&]() -> Status {
    try {
      switch (kind) {
        case SaveKind::WindowsBbb: return WriteWindowsBackup(openPath, work->folder, target, progress);
        case SaveKind::MacBbb: return WriteMacBackup(openPath, work->folder, target, progress);
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
                      progress);
}

}  // namespace orchidlamp
