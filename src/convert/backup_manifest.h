#pragma once

// The XML files of the desktop backups this program writes. Both are one line
// of 8-bit text ending in a single CR LF. Database names go in as they stand
// (cleaned of control characters, CR and LF) and are NOT escaped, as the desktop
// software writes them; a name holding "&" or "<" yields a file that XML
// parsers refuse.

#include <cstdint>
#include <string>
#include <vector>

namespace orchidlamp {

struct DatabaseSummary {
  std::string name;  // the name-table entry as text, control characters removed
  std::uint64_t recordCount = 0;
};

// Manifest.xml of the Windows kind: uid k = 1, 2, ... in the order given.
std::string ManifestXml(const std::vector<DatabaseSummary>& databases);

// BlackBerry_Backup.xml of the Mac kind.
std::string MacBackupXml(const std::vector<DatabaseSummary>& databases);

}  // namespace orchidlamp
