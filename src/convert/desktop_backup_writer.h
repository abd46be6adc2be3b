#pragma once

// Save As: the open IPD file written as a Windows desktop backup, a Mac desktop
// backup or a plain copy. The source is the open file on disk, read again.

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "convert/backup_manifest.h"
#include "convert/work_folder.h"
#include "convert/zip_archive.h"
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
// is removed afterwards either way. `loaded` may hold the bytes the open file
// was loaded from: the file is still read again, and when it holds exactly
// these bytes they are used rather than a second copy.
Result<Message> SaveBackupAs(const std::string& openPath, const std::string& target, SaveKind kind,
                             const Clock& clock, const std::string& tempRoot = SystemTempFolder(),
                             Progress* progress = nullptr, ByteView loaded = {});

// `mSaveas` on the workspace's open file; filterIndex 1, 2 or 3.
Result<Message> SaveAs(const Workspace& ws, const std::string& target, int filterIndex, Progress* progress = nullptr);

// The pieces, for callers and tests that want one step. Each returns the
// detailed reason of a failure; SaveBackupAs turns it into the system's text.

// Where one database's .dat content lies in the IPD it is taken from: the
// one-database header with the name entry unchanged, then the runs [begin, end)
// of the IPD that hold its records back to back, in order.
struct DatLayout {
  Bytes head;
  std::vector<std::pair<std::size_t, std::size_t>> runs;
  std::uint32_t k = 0;  // the number each record's database id becomes
  std::size_t size = 0;
};

// Gives a .dat's bytes from its layout and the IPD, piece by piece: each run
// as it stands with the first two bytes of every record replaced by k.
class DatContent : public EntryContent {
 public:
  DatContent(ByteView ipd, const DatLayout& layout) : ipd_(ipd), layout_(layout) { Rewind(); }
  std::uint64_t Size() const override { return layout_.size; }
  void Rewind() override;
  std::size_t Read(std::uint8_t* out, std::size_t n) override;

 private:
  ByteView ipd_;
  const DatLayout& layout_;
  std::size_t headAt_ = 0;
  std::size_t run_ = 0;
  std::size_t at_ = 0;    // the next IPD byte to give
  std::size_t next_ = 0;  // the start of the next record whose id is not yet replaced
};

// The databases of an IPD with their record counts, and, when `dats` is given,
// each database's .dat content: the one-database header, the name entry
// unchanged, the records numbered k = index + 1, marker blocks dropped.
Result<std::vector<DatabaseSummary>> SummarizeForSave(ByteView ipd, std::vector<Bytes>* dats,
                                                      Progress* progress = nullptr);
// The same in one walk, with each .dat's layout instead of its bytes.
Result<std::vector<DatabaseSummary>> LayOutDats(ByteView ipd, std::vector<DatLayout>& layouts,
                                                Progress* progress = nullptr);
Status WriteWindowsBackup(const std::string& ipdPath, const std::string& workFolder, const std::string& target,
                          Progress* progress = nullptr, ByteView loaded = {});
Status WriteMacBackup(const std::string& ipdPath, const std::string& workFolder, const std::string& target,
                      Progress* progress = nullptr, ByteView loaded = {});
// Zips the work folder's files into workFolder + "/OL_Convert.bbb": kind 1
// "Databases/1.dat" ... "Databases/<count>.dat", "Manifest.xml"; kind 2
// "Databases/Databases.ipd", "BlackBerry_Backup.xml". When `contents` is given
// (one per .dat or Databases.ipd entry), those entries' bytes come from it
// instead of files, with the time and permissions of the XML file beside them.
Status ZipBackup(const std::string& workFolder, std::size_t databaseCount, SaveKind kind,
                 const std::vector<EntryContent*>& contents = {});

}  // namespace orchidlamp
