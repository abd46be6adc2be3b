#pragma once

// Reading and writing whole files. Failures come back with a message that names
// the file and the reason.

#include <string>

#include "core/bytes.h"
#include "core/message.h"

namespace orchidlamp {

Result<Bytes> ReadWholeFile(const std::string& path);

// Writes from offset 0 without truncating: an existing longer file keeps its tail.
// This is how the backup writers have always written; keep it.
Status WriteInPlace(const std::string& path, ByteView bytes);

// Creates or truncates, then writes.
Status WriteTruncating(const std::string& path, ByteView bytes);

bool FolderExists(const std::string& path);
Status CreateFolder(const std::string& path);

}  // namespace orchidlamp
