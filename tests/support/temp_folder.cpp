#include "support/temp_folder.h"

#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace orchidlamp::testing {

TempFolder::TempFolder() : path_((std::filesystem::temp_directory_path() / "orchidlamp-test-XXXXXX").string()) {
  if (!mkdtemp(path_.data())) throw std::runtime_error("mkdtemp failed");
}

TempFolder::~TempFolder() {
  std::error_code ec;  // tests make folders read-only: give them back first
  std::filesystem::permissions(path_, std::filesystem::perms::owner_all, std::filesystem::perm_options::add, ec);
  std::filesystem::remove_all(path_, ec);
}

std::string TempFolder::Write(const std::string& name, const Bytes& bytes) const {
  const std::string path = File(name);
  std::ofstream(path, std::ios::binary | std::ios::trunc)
      .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  return path;
}

Bytes ReadFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return Bytes(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}
bool FileExists(const std::string& path) { return std::filesystem::exists(path); }

}  // namespace orchidlamp::testing
