#pragma once

// Save As: the open IPD file written as a Windows desktop backup, a Mac desktop
// backup or a plain copy. The source is the open file on disk, read again.

#include <string>
#include <string_view>
#include <vector>

#include "convert/backup_manifest.h"
#include "convert/work_folder.h"
#include "core/bytes.h"
#include "core/result.h"
#include "core/progress.h"
#include "core/time_stamp.h"
#include "core/workspace.h"

namespace orchidlamp {

inline constexpr std::string_view kSaveAsFilter =
    "BBB (Windows) Files (*.bbb)|*.bbb|BBB (Mac) Files (*.bbb)|*.bbb|IPD Files (*.ipd)|*.ipd";
inline constexpr std::string_view kSavedPrefix = "File saved successfully in ";
inline constexpr std::string_view kConvertError = "Error in convertion!!";
inline constexpr std::string_view kArchiveName = "OL_Convert.bbb";
// The desktop software's entry list holds 250 databases and the manifest.
inline constexpr std::size_t kMaxWindowsDatabases = 250;

// The save dialog's filter index.
enum class SaveKind { WindowsBbb = 1, MacBbb = 2, Ipd = 3 };

// The whole Save As command: the work folder under `tempRoot`, the writer of
// `kind`, the archive copied to `target`. Success is "File saved successfully
// in " + target; every failure is "Error in convertion!!" and leaves no file at
// `target` (an existing one is replaced only by a complete copy). The work folder
// is removed afterwards either way.
Result<Message> SaveBackupAs(const std::string& openPath, const std::string& target, SaveKind kind,
                             const Clock& clock, const std::string& tempRoot = SystemTempFolder(),
                             Progress* progress = nullptr);

// `mSaveas` on the workspace's open file; filterIndex 1, 2 or 3.
Result<Message> SaveAs(const Workspace& ws, const std::string& target, int filterIndex, Progress* progress = nullptr);

// The pieces, for callers and tests that want one step. Each returns the
// detailed reason of a failure; SaveBackupAs turns it into the system's text.

// The databases of an IPD with their record counts, and, when `dats` is given,
// each database's .dat content: the one-database header, the name entry
// unchanged, the records numbered k = index + 1, marker blocks dropped.
Result<std::vector<DatabaseSummary>> SummarizeForSave(ByteView ipd, std::vector<Bytes>* dats,
                                                      Progress* progress = nullptr);
Status WriteWindowsBackup(const std::string& ipdPath, const std::string& workFolder, const std::string& target,
                          Progress* progress = nullptr);
Status WriteMacBackup(const std::string& ipdPath, const std::string& workFolder, const std::string& target,
                      Progress* progress = nullptr);
// Zips the work folder's files into workFolder + "/OL_Convert.bbb": kind 1
// "Databases/1.dat" ... "Databases/<count>.dat", "Manifest.xml"; kind 2
// "Databases/Databases.ipd", "BlackBerry_Backup.xml".
Status ZipBackup(const std::string& workFolder, std::size_t databaseCount, SaveKind kind);

}  // namespace orchidlamp
