#include "fuzz_scratch.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "core/settings.h"

namespace orchidlamp::fuzz {
namespace {

class Scratch {
 public:
  Scratch() {
    std::string pattern = (std::filesystem::temp_directory_path() / "orchidlamp-fuzz-XXXXXX").string();
    if (::mkdtemp(pattern.data()) == nullptr) std::abort();
    path_ = pattern;
  }
  ~Scratch() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  const std::string& path() const { return path_; }

 private:
  std::string path_;
};

}  // namespace

const std::string& ScratchFolder() {
  static const Scratch scratch;
  return scratch.path();
}

std::string FreshScratchSubfolder(const std::string& name) {
  const std::filesystem::path folder = std::filesystem::path(ScratchFolder()) / name;
  std::error_code ignored;
  std::filesystem::remove_all(folder, ignored);
  std::filesystem::create_directories(folder, ignored);
  return folder.string();
}

std::string WriteScratchFile(const std::string& name, const std::uint8_t* data, std::size_t size) {
  const std::string path = ScratchFolder() + "/" + name;
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
  out.close();
  if (!out) std::abort();
  return path;
}

void PointFoldersAtScratch(Workspace& ws) {
  ws.folders().program = FreshScratchSubfolder("program");
  ws.folders().output = FreshScratchSubfolder("output");
}

Status LoadScratchBackup(Workspace& ws, const std::uint8_t* data, std::size_t size) {
  return ws.Load(WriteScratchFile("backup.ipd", data, size), StoredSettings{});
}

std::uint8_t ControlReader::Byte() { return used_ < size_ ? data_[used_++] : 0; }

std::string ControlReader::ShortText(std::size_t most) {
  const std::size_t wanted = Byte() % (most + 1);
  const std::size_t count = std::min(wanted, size_ - used_);
  std::string text(reinterpret_cast<const char*>(data_ + used_), count);
  used_ += count;
  return text;
}

}  // namespace orchidlamp::fuzz
