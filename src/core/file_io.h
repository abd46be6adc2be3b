#pragma once

// Reading and writing whole files. Failures come back with a message that names
// the file and the reason.

#include <initializer_list>
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

// Creates or truncates, then writes the pieces one after another, so a file made
// of parts already in memory needs neither a joined copy nor reading the parts
// back. On failure the file is removed: a caller never opens half of it.
Status WriteConcatenated(const std::string& path, std::initializer_list<ByteView> pieces);

bool FolderExists(const std::string& path);
Status CreateFolder(const std::string& path);

}  // namespace orchidlamp
