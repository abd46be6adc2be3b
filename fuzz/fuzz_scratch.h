#pragma once

// What the targets share: a scratch folder for the files the code under test
// insists on reading or writing, and a reader that takes control values from
// the front of an input without ever failing.

#include <cstddef>
#include <cstdint>
#include <string>

#include "core/bytes.h"
#include "core/workspace.h"

namespace orchidlamp::fuzz {

// One folder per process under the system temporary folder, made on first use
// and removed at exit. Targets write only below it.
const std::string& ScratchFolder();
// A sub-folder of the scratch folder, emptied of files; made when missing.
std::string FreshScratchSubfolder(const std::string& name);
// Writes the bytes to ScratchFolder()/name (truncating) and returns the path.
std::string WriteScratchFile(const std::string& name, const std::uint8_t* data, std::size_t size);

// Loads the bytes as an IPD into `ws` the way the open flow does.
Status LoadScratchBackup(Workspace& ws, const std::uint8_t* data, std::size_t size);

// Points the workspace's program and output folders at emptied scratch
// sub-folders, so whatever a command writes lands there.
void PointFoldersAtScratch(Workspace& ws);

// Takes bytes from the front; past the end every read gives 0 or nothing.
class ControlReader {
 public:
  ControlReader(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}

  std::uint8_t Byte();
  // Up to `most` bytes, the count itself read first.
  std::string ShortText(std::size_t most);

  const std::uint8_t* rest() const { return data_ + used_; }
  std::size_t restSize() const { return size_ - used_; }

 private:
  const std::uint8_t* data_;
  std::size_t size_;
  std::size_t used_ = 0;
};

}  // namespace orchidlamp::fuzz
