#include "core/file_io.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <new>
#include <stdexcept>

namespace orchidlamp {
namespace {

// Writes and keeps the descriptor open; closes it only on failure.
Status WriteOpen(int fd, const std::string& path, ByteView bytes) {
  if (WriteFully(fd, bytes)) return Ok();
  Failure f = SystemFailure("Cannot write", path);
  ::close(fd);
  return f;
}

Status WriteAll(int fd, const std::string& path, ByteView bytes) {
  if (Status written = WriteOpen(fd, path, bytes); !written) return written;
  if (::close(fd) != 0) return SystemFailure("Cannot write", path);
  return Ok();
}

// Opens for writing and says whether the open made the file: a writer that
// cannot finish removes a file it made, never one that was there before.
int OpenForWriting(const std::string& path, int flags, bool& created) {
  int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | flags, 0644);
  created = fd >= 0;
  if (fd < 0 && errno == EEXIST) fd = ::open(path.c_str(), O_WRONLY | O_CLOEXEC | flags);
  return fd;
}

Status WriteWithFlags(const std::string& path, ByteView bytes, int flags) {
  struct stat st {};
  if (::stat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode)) return Fail("Cannot write " + path + ": it is a folder");
  bool created = false;
  const int fd = OpenForWriting(path, flags, created);
  if (fd < 0) return SystemFailure("Cannot write", path);
  Status written = WriteAll(fd, path, bytes);
  if (!written && created) ::unlink(path.c_str());
  return written;
}

}  // namespace

Failure SystemFailure(const std::string& what, const std::string& path) {
  return Fail(what + " " + path + ": " + std::strerror(errno));
}

bool WriteFully(int fd, ByteView bytes) {
  while (!bytes.empty()) {
    const ssize_t n = ::write(fd, bytes.data(), bytes.size());
    if (n < 0 && errno == EINTR) continue;
    if (n < 0) return false;
    bytes = bytes.subspan(static_cast<std::size_t>(n));
  }
  return true;
}

Result<Bytes> ReadWholeFile(const std::string& path) {
  const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) return SystemFailure("Cannot open", path);
  struct stat st {};
  if (::fstat(fd, &st) != 0 || S_ISDIR(st.st_mode)) {
    if (S_ISDIR(st.st_mode)) errno = EISDIR;
    Failure f = SystemFailure("Cannot open", path);
    ::close(fd);
    return f;
  }
  // Reserved, advised, then sized: the zero fill is what first touches the pages.
  Bytes bytes;
  try {
    bytes.reserve(static_cast<std::size_t>(st.st_size));
    PreferHugePages(bytes.data(), bytes.capacity());
    bytes.resize(static_cast<std::size_t>(st.st_size));
  } catch (const std::bad_alloc&) {
    ::close(fd);
    return Fail("Not enough memory to load " + path);
  } catch (const std::length_error&) {
    ::close(fd);
    return Fail("Not enough memory to load " + path);
  }
  std::size_t done = 0;
  while (done < bytes.size()) {
    const ssize_t n = ::read(fd, bytes.data() + done, bytes.size() - done);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) break;
    done += static_cast<std::size_t>(n);
  }
  ::close(fd);
  bytes.resize(done);
  return bytes;
}

void PreferHugePages(const void* data, std::size_t size) {
#ifdef MADV_HUGEPAGE
  constexpr std::uintptr_t kHugePage = std::uintptr_t{2} << 20;
  const auto start = reinterpret_cast<std::uintptr_t>(data);
  const std::uintptr_t first = (start + kHugePage - 1) & ~(kHugePage - 1);
  const std::uintptr_t end = (start + size) & ~(kHugePage - 1);
  if (data == nullptr || end <= first) return;
  (void)::madvise(reinterpret_cast<void*>(first), end - first, MADV_HUGEPAGE);
#else
  (void)data;
  (void)size;
#endif
}

Status WriteInPlace(const std::string& path, ByteView bytes) { return WriteWithFlags(path, bytes, 0); }

Status WriteTruncating(const std::string& path, ByteView bytes) { return WriteWithFlags(path, bytes, O_TRUNC); }

Status WriteConcatenated(const std::string& path, std::initializer_list<ByteView> pieces) {
  struct stat st {};
  if (::stat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode)) return Fail("Cannot write " + path + ": it is a folder");
  const int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
  if (fd < 0) return SystemFailure("Cannot write", path);
  for (ByteView piece : pieces)
    if (Status written = WriteOpen(fd, path, piece); !written) {
      ::unlink(path.c_str());
      return written;
    }
  if (::close(fd) != 0) {
    Failure f = SystemFailure("Cannot write", path);
    ::unlink(path.c_str());
    return f;
  }
  return Ok();
}

BufferedFileWriter::BufferedFileWriter(const std::string& path, Mode mode, std::size_t bufferSize)
    : path_(path), buffer_(bufferSize == 0 ? 1 : bufferSize) {
  struct stat st {};
  if (::stat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode)) {
    failure_ = Fail("Cannot write " + path + ": it is a folder");
    return;
  }
  fd_ = OpenForWriting(path, mode == Mode::Truncating ? O_TRUNC : 0, created_);
  if (fd_ < 0) failure_ = SystemFailure("Cannot write", path);
}

BufferedFileWriter::~BufferedFileWriter() {
  if (fd_ >= 0) ::close(fd_);
  // Abandoned (a command stopped or was cancelled part way) or failed.
  if (!finished_ && created_) ::unlink(path_.c_str());
}

void BufferedFileWriter::Append(ByteView bytes) {
  while (!bytes.empty()) {
    if (used_ == buffer_.size()) Flush();
    const std::size_t n = std::min(bytes.size(), buffer_.size() - used_);
    std::memcpy(buffer_.data() + used_, bytes.data(), n);
    used_ += n;
    bytes = bytes.subspan(n);
  }
}

void BufferedFileWriter::Flush() {
  if (fd_ >= 0 && !failure_) {
    Status written = WriteOpen(fd_, path_, ByteView(buffer_).first(used_));
    if (!written) {
      failure_ = written.failure();
      fd_ = -1;  // WriteOpen closed it
    }
  }
  written_ += used_;
  used_ = 0;
  Report(progress_, written_, total_);
}

Status BufferedFileWriter::Finish() {
  Flush();
  if (failure_) return *failure_;
  const int fd = fd_;
  fd_ = -1;
  if (::close(fd) != 0) return SystemFailure("Cannot write", path_);
  finished_ = true;
  return Ok();
}

bool FolderExists(const std::string& path) {
  struct stat st {};
  return ::stat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

Status CreateFolder(const std::string& path) {
  if (FolderExists(path)) return Ok();
  if (::mkdir(path.c_str(), 0755) != 0) return SystemFailure("Cannot create folder", path);
  return Ok();
}

}  // namespace orchidlamp
