#include <filesystem>

#include "export/migrate_writers.h"

namespace orchidlamp {
namespace {

// Large enough that writes are few, small beside the backup held in memory.
constexpr std::size_t kFileBuffer = std::size_t{256} << 10;

}  // namespace

MigrationFile::MigrationFile(std::string path, PrepareFolder prepare)
    : path_(std::move(path)), prepare_(std::move(prepare)) {}

BufferedFileWriter* MigrationFile::Next() {
  if (failure_) return nullptr;
  if (!file_) {
    if (Status ready = prepare_(); !ready) {
      SetFailure(ready.failure());
      return nullptr;
    }
    // A stale file or folder of this name from a run that died is not ours to keep.
    std::error_code error;
    std::filesystem::remove_all(path_, error);
    file_ = std::make_unique<BufferedFileWriter>(path_, BufferedFileWriter::Mode::Truncating, kFileBuffer);
    if (file_->failure()) {
      SetFailure(*file_->failure());
      return nullptr;
    }
    Head(*file_);
    if (failure_) return nullptr;
  }
  ++count_;
  return file_.get();
}

void MigrationFile::SetFailure(Failure failure) {
  if (!failure_) failure_ = std::move(failure);
}

Status MigrationFile::Finish() {
  if (!failure_ && file_) Tail(*file_);
  if (failure_) return *failure_;
  if (!file_) return Ok();
  return file_->Finish();
}

}  // namespace orchidlamp
