#pragma once
#include <string>

#include "core/bytes.h"

namespace orchidlamp::testing {

// A fresh folder under the system temporary folder, removed with its contents.
class TempFolder {
 public:
  TempFolder();
  ~TempFolder();
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  const std::string& path() const { return path_; }
  std::string File(const std::string& name) const { return path_ + "/" + name; }
  std::string Write(const std::string& name, const Bytes& bytes) const;  // returns the file's path

 private:
  std::string path_;
};
Bytes ReadFile(const std::string& path);
bool FileExists(const std::string& path);

}  // namespace orchidlamp::testing
