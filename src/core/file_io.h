#pragma once

// Reading and writing whole files. Failures come back with a message that names
// the file and the reason.

#include <initializer_list>
#include <optional>
#include <string>

#include "core/bytes.h"
#include "core/progress.h"
#include "core/result.h"

namespace orchidlamp {

// "WHAT PATH: " and the system's reason for the last failed call.
Failure SystemFailure(const std::string& what, const std::string& path);

// Writes all of `bytes` to an open descriptor, again after interruptions; the
// descriptor stays open either way and errno tells why it stopped.
bool WriteFully(int fd, ByteView bytes);

// A file larger than the memory the process may have gives "Not enough memory
// to load PATH" rather than an exception.
Result<Bytes> ReadWholeFile(const std::string& path);

// Asks the kernel to back the whole 2 MiB pages inside [data, data + size) with
// huge pages when they are first touched: a buffer the size of a backup then
// costs a few hundred page faults instead of tens of thousands. Call it on
// reserved, untouched memory; memory already touched keeps its small pages. A
// hint only: it never fails and changes no content.
void PreferHugePages(const void* data, std::size_t size);

// Writes from offset 0 without truncating: an existing longer file keeps its tail,
// as the backup writers require. A file the write created and could not finish
// is removed; an existing one stays as far as it was written.
Status WriteInPlace(const std::string& path, ByteView bytes);

// Creates or truncates, then writes.
Status WriteTruncating(const std::string& path, ByteView bytes);

// Creates or truncates, then writes the pieces one after another, so a file made
// of parts already in memory needs neither a joined copy nor reading the parts
// back. On failure the file is removed: a caller never opens half of it.
Status WriteConcatenated(const std::string& path, std::initializer_list<ByteView> pieces);

// Writes one file through one fixed buffer that goes out whenever it fills: a
// file of any size costs the buffer, not its size, in fresh memory. The file is
// opened by the constructor, in place (no truncation, as WriteInPlace) or
// truncating; a failure to open or write is kept, later appends are dropped, and
// Finish() reports it with WriteInPlace's texts. A writer destroyed before a
// successful Finish() (a failure, a command stopped or cancelled part way)
// removes the file if its constructor created it.
class BufferedFileWriter {
 public:
  enum class Mode { InPlace, Truncating };
  static constexpr std::size_t kDefaultBuffer = std::size_t{4} << 20;

  BufferedFileWriter(const std::string& path, Mode mode, std::size_t bufferSize = kDefaultBuffer);
  ~BufferedFileWriter();
  BufferedFileWriter(const BufferedFileWriter&) = delete;
  BufferedFileWriter& operator=(const BufferedFileWriter&) = delete;

  // The open's failure, if any; appending to a writer that failed to open is harmless.
  const std::optional<Failure>& failure() const { return failure_; }

  void Append(ByteView bytes);
  void Append(std::string_view text) { Append(TextBytes(text)); }
  void Put(std::uint8_t byte) {
    if (used_ == buffer_.size()) Flush();
    buffer_[used_++] = byte;
  }

  // Writes what is buffered and closes the file.
  Status Finish();

  // Each time the buffer goes out: the bytes written so far of `total`.
  void ReportTo(Progress* progress, std::size_t total) {
    progress_ = progress;
    total_ = total;
  }

 private:
  void Flush();

  std::string path_;
  int fd_ = -1;
  bool created_ = false;
  bool finished_ = false;
  Bytes buffer_;
  std::size_t used_ = 0;
  std::size_t written_ = 0;
  Progress* progress_ = nullptr;
  std::size_t total_ = 0;
  std::optional<Failure> failure_;
};

// Writers that fill either a byte array or a file through its buffer append
// through this and the Append of core/bytes.h alike.
inline void Append(BufferedFileWriter& out, ByteView bytes) { out.Append(bytes); }

bool FolderExists(const std::string& path);
Status CreateFolder(const std::string& path);

}  // namespace orchidlamp
