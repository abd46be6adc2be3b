#pragma once

// The temporary folder one conversion works in: "OL_" + ddhhnnss under the
// system temporary folder, with the part files a desktop backup is rebuilt from.

#include <string>

#include "core/result.h"
#include "core/time_stamp.h"

namespace orchidlamp {

struct WorkFolder {
  std::string folder;   // no trailing separator
  std::string ipdPart;  // folder + "/IPD": the IPD header
  std::string hPart;    // folder + "/H": the database-name table
  std::string rPart;    // folder + "/R": the records
};

// The system temporary folder (TMPDIR or /tmp), without a trailing separator.
std::string SystemTempFolder();

// Creates a new, empty work folder under `root` named "OL_" + ddhhnnss of
// clock(). The part files are written once and whole, so a folder that already
// exists (a second conversion within the same second) must never be reused:
// then "_2", "_3", ... is added to the name until mkdir creates a new folder.
Result<WorkFolder> CreateWorkFolder(const std::string& root, const Clock& clock);

// Removes a folder and everything in it; errors are ignored.
void RemoveFolderTree(const std::string& folder);

}  // namespace orchidlamp
