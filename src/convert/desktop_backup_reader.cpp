#include "convert/desktop_backup_reader.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <initializer_list>
#include <memory>
#include <new>
#include <optional>

#include "convert/xml_document.h"
#include "core/file_io.h"
#include "core/hex_text.h"
#include "core/ipd_format.h"
#include "core/paths.h"

namespace orchidlamp {
namespace {

Failure Truncated(const std::string& name) {
  return Fail(name + " in the desktop backup is shorter than its lengths state");
}

// A uid names a file in the work folder; anything that could name another
// folder is not a uid the desktop software writes.
bool IsSafeUid(const std::string& uid) {
  return !uid.empty() && uid != "." && uid != ".." && uid.find_first_of(std::string_view("/\\\0", 3)) == std::string::npos;
}

// Gives `out` each record of a .dat with its database number x as x - 1, the
// marker blocks passed over. Returns the .dat's name entry, or nothing when the
// file is shorter than its lengths state (`out` may then hold some records).
template <class Out>
std::optional<ByteView> WalkDat(ByteView dat, Out& out, Progress* progress) {
  auto table = ReadNameTable(dat, NameCount::One);
  if (!table) return std::nullopt;
  std::size_t done = 0;
  const RecordWalk walked = WalkRecords(
      dat, table->recordsStart,
      [&](const RecordLocation& r) {
        const std::uint32_t index = (r.databaseId - 1) & 0xFFFF;
        const std::uint8_t id[2] = {static_cast<std::uint8_t>(index & 0xFF), static_cast<std::uint8_t>(index >> 8)};
        Append(out, ByteView(id, 2));
        Append(out, r.Whole(dat).subspan(2));
        Report(progress, ++done, 0);
      },
      MarkerSkip::ZeroThenOne);
  if (!walked) return std::nullopt;
  return table->entries.front().Bytes(dat);
}

// One buffer for every .dat of a backup, sized once to the largest and filled
// by read() alone: the files cost neither a zero fill nor fresh memory each.
class DatBuffer {
 public:
  // Best effort: a failure here is reported by the Read that needs the room.
  void Reserve(std::size_t size) {
    if (size <= capacity_) return;
    data_.reset();
    capacity_ = 0;
    data_.reset(new (std::nothrow) std::uint8_t[size]);
    if (!data_) return;
    capacity_ = size;
    PreferHugePages(data_.get(), size);
  }

  // The file's bytes and failures as ReadWholeFile gives them.
  Result<ByteView> Read(const std::string& path) {
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) return Fail("Cannot open " + path + ": " + std::strerror(errno));
    struct stat st {};
    if (::fstat(fd, &st) != 0 || S_ISDIR(st.st_mode)) {
      if (S_ISDIR(st.st_mode)) errno = EISDIR;
      Failure failure = Fail("Cannot open " + path + ": " + std::strerror(errno));
      ::close(fd);
      return failure;
    }
    const auto size = static_cast<std::size_t>(st.st_size);
    Reserve(size);
    if (size > capacity_) {
      ::close(fd);
      return Fail("Not enough memory to load " + path);
    }
    std::size_t done = 0;
    while (done < size) {
      const ssize_t n = ::read(fd, data_.get() + done, size - done);
      if (n < 0 && errno == EINTR) continue;
      if (n <= 0) break;
      done += static_cast<std::size_t>(n);
    }
    ::close(fd);
    return ByteView(data_.get(), done);
  }

 private:
  std::unique_ptr<std::uint8_t[]> data_;
  std::size_t capacity_ = 0;
};

// Creates or truncates `path` and writes the pieces, then the whole content of
// the file `tail`, copied by the kernel. On failure `path` is removed.
Status WriteJoined(const std::string& path, std::initializer_list<ByteView> pieces, const std::string& tail) {
  if (FolderExists(path)) return Fail("Cannot write " + path + ": it is a folder");
  const int out = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
  if (out < 0) return SystemFailure("Cannot write", path);
  const int in = ::open(tail.c_str(), O_RDONLY | O_CLOEXEC);
  auto fail = [&](const std::string& what, const std::string& file) -> Status {
    Failure failure = SystemFailure(what, file);
    if (in >= 0) ::close(in);
    ::close(out);
    ::unlink(path.c_str());
    return failure;
  };
  if (in < 0) return fail("Cannot read", tail);
  for (ByteView piece : pieces)
    if (!WriteFully(out, piece)) return fail("Cannot write", path);
  bool copying = true;
  for (;;) {
    const ssize_t n = ::copy_file_range(in, nullptr, out, nullptr, std::size_t{1} << 30, 0);
    if (n > 0) continue;
    if (n == 0) break;
    if (errno == EINTR) continue;
    // Not between these two files: copied through a buffer instead.
    if (errno == EXDEV || errno == EINVAL || errno == ENOSYS || errno == EOPNOTSUPP) {
      copying = false;
      break;
    }
    return fail("Cannot write", path);
  }
  if (!copying) {
    Bytes chunk(std::size_t{1} << 20);
    for (;;) {
      const ssize_t n = ::read(in, chunk.data(), chunk.size());
      if (n < 0 && errno == EINTR) continue;
      if (n < 0) return fail("Cannot read", tail);
      if (n == 0) break;
      if (!WriteFully(out, ByteView(chunk).first(static_cast<std::size_t>(n)))) return fail("Cannot write", path);
    }
  }
  ::close(in);
  if (::close(out) != 0) {
    Failure failure = SystemFailure("Cannot write", path);
    ::unlink(path.c_str());
    return failure;
  }
  return Ok();
}

Result<std::string> ConvertWindows(const XmlDocument& manifest, const WorkFolder& work, const std::string& result,
                                   Progress* progress) {
  // Counted before the uids are collected: a manifest of a million databases
  // is refused without a million lookups.
  const std::size_t count = manifest.Count(std::string(kManifestDatabasesXPath));
  if (count > kMaxManifestDatabases)
    return Fail("Manifest.xml lists " + std::to_string(count) + " databases; at most " +
                std::to_string(kMaxManifestDatabases) + " can be read");
  auto uids = manifest.SelectEach(std::string(kManifestDatabasesXPath), "@uid");
  if (!uids) return uids.failure();

  // The records go to the record part as each .dat is read, so no more than
  // one .dat is held at a time; a failure leaves no part behind.
  BufferedFileWriter records(work.rPart, BufferedFileWriter::Mode::Truncating);
  Bytes names;
  DatBuffer buffer;
  std::size_t largest = 0;
  for (std::size_t i = 0; i < count; ++i) {
    struct stat st {};
    const auto& uid = uids.value()[i];
    if (uid && IsSafeUid(*uid) && ::stat(JoinPath(work.folder, *uid + ".dat").c_str(), &st) == 0 && S_ISREG(st.st_mode))
      largest = std::max(largest, static_cast<std::size_t>(st.st_size));
  }
  buffer.Reserve(largest);
  for (std::size_t i = 0; i < count; ++i) {
    const auto& uid = uids.value()[i];
    if (!uid) return Fail("Database " + std::to_string(i + 1) + " of Manifest.xml has no uid");
    if (!IsSafeUid(*uid)) return Fail("Manifest.xml names an unsafe database file: " + *uid);
    const std::string dat = JoinPath(work.folder, *uid + ".dat");
    if (::access(dat.c_str(), F_OK) != 0)
      return Fail("The desktop backup lacks " + *uid + ".dat, which Manifest.xml lists");
    auto bytes = buffer.Read(dat);
    if (!bytes) return bytes.failure();
    const auto name = WalkDat(bytes.value(), records, progress);
    if (!name) return Truncated(FileNameOf(dat));
    Append(names, *name);
  }

  // The header's count byte is the count modulo 256, as every writer's is.
  const Bytes header = HexToBytes(IpdHeaderHex(count));
  if (Status s = WriteTruncating(work.ipdPart, header); !s) return s.failure();
  if (Status s = WriteTruncating(work.hPart, names); !s) return s.failure();
  if (Status s = records.Finish(); !s) return s.failure();
  if (Status s = WriteJoined(result, {header, names}, work.rPart); !s) return s.failure();
  return result;
}

Result<std::string> ConvertMac(const WorkFolder& work, const std::string& result) {
  const std::string source = JoinPath(work.folder, kMacDatabasesIpd);
  if (::access(source.c_str(), F_OK) != 0)
    return Fail("The desktop backup lacks " + std::string(kMacDatabasesIpd) + ", which " +
                std::string(kMacBackupXml) + " goes with");
  if (Status s = ConcatenateFiles(result, {source}); !s) return s.failure();
  return result;
}

}  // namespace

Status AppendDatabaseBytes(ByteView dat, const std::string& name, DatabaseParts& parts, Progress* progress) {
  // Appended in place and cut back when refused, so that a file refused halfway
  // adds nothing and the records are copied once.
  Bytes& records = parts.records;
  const std::size_t kept = records.size();
  // Grown geometrically: reserving each file's exact size would copy all earlier
  // databases' records again for every file.
  if (records.capacity() < kept + dat.size()) records.reserve(std::max(kept + dat.size(), 2 * records.capacity()));
  const auto entry = WalkDat(dat, records, progress);
  if (!entry) {
    records.resize(kept);
    return Truncated(name);
  }
  Append(parts.names, *entry);
  return Ok();
}

Status AppendDatabaseFile(const std::string& datPath, DatabaseParts& parts, Progress* progress) {
  auto bytes = ReadWholeFile(datPath);
  if (!bytes) return bytes.failure();
  return AppendDatabaseBytes(bytes.value(), FileNameOf(datPath), parts, progress);
}

Status ConcatenateFiles(const std::string& target, const std::vector<std::string>& parts) {
  BufferedFileWriter out(target, BufferedFileWriter::Mode::Truncating);
  if (out.failure()) return *out.failure();
  Bytes chunk(std::size_t{1} << 20);
  for (const std::string& part : parts) {
    const int fd = ::open(part.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) return Fail("Cannot read " + part + ": " + std::strerror(errno));
    for (;;) {
      const ssize_t n = ::read(fd, chunk.data(), chunk.size());
      if (n < 0 && errno == EINTR) continue;
      if (n < 0) {
        Failure failure = Fail("Cannot read " + part + ": " + std::strerror(errno));
        ::close(fd);
        return failure;
      }
      if (n == 0) break;
      out.Append(ByteView(chunk).first(static_cast<std::size_t>(n)));
    }
    ::close(fd);
  }
  // A writer that failed removes the file it created when it goes.
  return out.Finish();
}

Result<std::string> ConvertExtracted(const WorkFolder& work, const Clock& clock, Progress* progress) {
  const std::string manifestPath = JoinPath(work.folder, kManifestXml);
  const std::string macPath = JoinPath(work.folder, kMacBackupXml);
  auto manifest = XmlDocument::Load(manifestPath);
  std::optional<Result<XmlDocument>> mac;
  if (!manifest) mac.emplace(XmlDocument::Load(macPath));
  const std::string result = JoinPath(work.folder, "OL_" + DdHhNnSs(clock()) + ".ipd");

  if (manifest) return ConvertWindows(manifest.value(), work, result, progress);
  if (mac->ok()) return ConvertMac(work, result);
  // Neither loaded: the parser's reason, for the file that is there.
  const bool manifestThere = ::access(manifestPath.c_str(), F_OK) == 0;
  const bool macThere = ::access(macPath.c_str(), F_OK) == 0;
  if (manifestThere && !macThere) return manifest.failure();
  if (macThere) return mac->failure();
  return Fail("The desktop backup holds neither " + std::string(kManifestXml) + " nor " + std::string(kMacBackupXml));
}

Result<std::string> ConvertDesktopBackup(const std::string& bbbPath, const Clock& clock, const std::string& tempRoot,
                                         Progress* progress, const ExtractLimits& limits) {
  auto work = CreateWorkFolder(tempRoot, clock);
  if (!work) return work.failure();
  auto converted = [&]() -> Result<std::string> {
    if (Status extracted = ExtractArchive(bbbPath, work->folder, limits); !extracted) return extracted.failure();
    return ConvertExtracted(work.value(), clock, progress);
  }();
  if (!converted) RemoveFolderTree(work->folder);
  return converted;
}

}  // namespace orchidlamp
