#include "convert/work_folder.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

#include "core/paths.h"

namespace orchidlamp {

std::string SystemTempFolder() {
  std::error_code ec;
  std::string root = std::filesystem::temp_directory_path(ec).string();
  if (ec || root.empty()) root = "/tmp";
  while (root.size() > 1 && root.back() == '/') root.pop_back();
  return root;
}

Result<WorkFolder> CreateWorkFolder(const std::string& root, const Clock& clock) {
  const std::string base = JoinPath(root, "OL_" + DdHhNnSs(clock()));
  constexpr int kAttempts = 1000;
  for (int attempt = 1; attempt <= kAttempts; ++attempt) {
    const std::string folder = attempt == 1 ? base : base + "_" + std::to_string(attempt);
    if (::mkdir(folder.c_str(), 0700) == 0)
      return WorkFolder{folder, JoinPath(folder, "IPD"), JoinPath(folder, "H"), JoinPath(folder, "R")};
    if (errno != EEXIST) return Fail("Cannot create folder " + folder + ": " + std::strerror(errno));
  }
  return Fail("Cannot create a new work folder beside " + base);
}

void RemoveFolderTree(const std::string& folder) {
  std::error_code ec;
  std::filesystem::remove_all(folder, ec);
}

}  // namespace orchidlamp
