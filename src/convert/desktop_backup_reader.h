#pragma once

// Turning a desktop backup (BBB) into an IPD file that the loader can open.
// The Windows kind (Manifest.xml and one .dat per database) is rebuilt into an
// IPD; the Mac kind (BlackBerry_Backup.xml and Databases.ipd) is copied out.
// When both XML files are present the archive is read as the Windows kind.

#include <string>
#include <vector>

#include "convert/work_folder.h"
#include "convert/zip_archive.h"
#include "core/bytes.h"
#include "core/result.h"
#include "core/progress.h"
#include "core/time_stamp.h"

namespace orchidlamp {

inline constexpr std::string_view kManifestXml = "Manifest.xml";
inline constexpr std::string_view kMacBackupXml = "BlackBerry_Backup.xml";
inline constexpr std::string_view kMacDatabasesIpd = "Databases.ipd";
inline constexpr std::string_view kManifestDatabasesXPath = "/BlackBerry_Backup/NessusOSDevice/Databases/Database";
// The database counter of the desktop software is a signed 16-bit number.
inline constexpr std::size_t kMaxManifestDatabases = 32767;

// Extracts the archive into a new work folder under `tempRoot` and converts it.
// Returns the path of the IPD produced: work folder + "/OL_" + ddhhnnss +
// ".ipd", the time taken again when the conversion proper starts. The IPD and
// its work folder stay after success (the IPD becomes the open file); after a
// failure the work folder is removed, so no partial IPD is ever left behind.
Result<std::string> ConvertDesktopBackup(const std::string& bbbPath, const Clock& clock,
                                         const std::string& tempRoot = SystemTempFolder(),
                                         Progress* progress = nullptr, const ExtractLimits& limits = {});

// Converts an already extracted backup in `work.folder`. A failure never leaves
// a file at the result path.
Result<std::string> ConvertExtracted(const WorkFolder& work, const Clock& clock, Progress* progress = nullptr);

// The name table and the records a Windows backup's .dat files add up to.
struct DatabaseParts {
  Bytes names;
  Bytes records;
};

// Adds one .dat file's name entry (unchanged) and its records to `parts`. Each
// record's database number x becomes x - 1 (the .dat counts from 1, the IPD
// from 0; x is not checked against the manifest), and the marker blocks the
// desktop software leaves after records are dropped. `name` only labels
// failures: a file shorter than its lengths state is refused whole, adding
// nothing to `parts`.
Status AppendDatabaseBytes(ByteView dat, const std::string& name, DatabaseParts& parts, Progress* progress = nullptr);
Status AppendDatabaseFile(const std::string& datPath, DatabaseParts& parts, Progress* progress = nullptr);

// Writes the files one after another into `target` (created or truncated). A
// failure gives the system's reason and removes a target the write created.
Status ConcatenateFiles(const std::string& target, const std::vector<std::string>& parts);

}  // namespace orchidlamp
