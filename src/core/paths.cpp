#include "core/paths.h"

namespace orchidlamp {

std::string FolderOf(std::string_view path) {
  const auto at = path.find_last_of("/\\");
  return at == std::string_view::npos ? std::string() : std::string(path.substr(0, at + 1));
}

std::string FileNameOf(std::string_view path) {
  const auto at = path.find_last_of("/\\");
  return std::string(at == std::string_view::npos ? path : path.substr(at + 1));
}

std::string JoinPath(std::string_view folder, std::string_view name) {
  std::string out(folder);
  if (!out.empty() && out.back() != '/' && out.back() != '\\') out.push_back('/');
  out += name;
  return out;
}

}  // namespace orchidlamp
