#pragma once

// Everything the main window holds, without a widget: the loaded file, the
// database index, the tree, the settings read at open time, the status bar and
// menu states, the export indentation and the service-book panel values. The
// window and the command line are both front ends over one of these.

#include <array>
#include <optional>
#include <string>

#include "core/bytes.h"
#include "core/database_tree.h"
#include "core/kinds.h"
#include "core/result.h"
#include "core/progress.h"
#include "core/record_labeller.h"
#include "core/settings.h"
#include "core/time_stamp.h"

namespace orchidlamp {

inline constexpr std::string_view kWindowCaption = "Orchidlamp IPD Reader";
inline constexpr std::string_view kNoFileRootText = "IPD Databases";
inline constexpr std::string_view kNoFileHint = "Please open IPD file from File menu";
inline constexpr std::string_view kRootKey = "Top";
inline constexpr std::string_view kDatabaseKeySuffix = "DBTop";
inline constexpr std::size_t kServiceBookBoxes = 22;

struct LoadedFile {
  std::string path;
  Bytes bytes;

  ByteView View() const { return bytes; }
};

struct StatusPanels {
  std::string main;
  std::string details;
};

struct MenuStates {
  bool saveAs = false;
  bool servicebook = false;
  bool manipulate = false;
};

// Where written files go. Empty means the system's own choice: the program's
// folder for media and contact pictures, the open backup's folder for exports
// and edited backups.
struct OutputFolders {
  std::string program;
  std::string output;
};

// What a load puts in the tree: every record, or only the databases for a
// command that needs no more than the counts and the loaded bytes.
enum class TreeScope { Records, DatabasesOnly };

class Workspace {
 public:
  explicit Workspace(const RecordLabeller& labeller, Clock clock = SystemClock());

  // Loads an IPD file: reads it, rebuilds the tree and the index, fills the
  // status bar. Failures carry the loader's messages; after a walk that fails
  // part way the tree, the counters, the status bar and the menus hold what
  // was read.
  Status Load(const std::string& path, const StoredSettings& settings, Progress* progress = nullptr,
              TreeScope scope = TreeScope::Records);

  const LoadedFile& file() const { return file_; }
  const DatabaseTree& tree() const { return tree_; }
  DatabaseTree& tree() { return tree_; }
  const SettingsSnapshot& settings() const { return settings_; }
  const StatusPanels& status() const { return status_; }
  const MenuStates& menus() const { return menus_; }
  MenuStates& menus() { return menus_; }
  std::string Caption() const;

  int Slot(Kind kind) const { return slots_[static_cast<std::size_t>(kind)]; }
  int Counter(Kind kind) const { return counters_[static_cast<std::size_t>(kind)]; }
  // The kind a record of this database is read as, by the slots in walk order.
  std::optional<Kind> KindOfDatabase(std::uint32_t databaseIndex) const;

  // The body bytes of a record node's tag. Throws CommandError when the tag does
  // not lie inside the loaded bytes.
  ByteView Body(const RecordSpan& span) const;

  const RecordLabeller& labeller() const { return labeller_; }
  const Clock& clock() const { return clock_; }
  OutputFolders& folders() { return folders_; }
  const OutputFolders& folders() const { return folders_; }
  // The folder exports and edited backups go to, with its trailing separator
  // (empty when the open path has none).
  std::string OutputFolder() const;
  std::string ProgramFolder() const;

  // Indentation of exported record lines; only the whole-tree export moves it,
  // and it drifts across exports of one session.
  int exportDepth = 0;
  // The service-book panel's 22 boxes. A click fills the boxes whose field is
  // present and leaves the others as they were.
  std::array<std::string, kServiceBookBoxes> hrtnet{};
  // The tree's selected node.
  NodeId selected = kNoNode;

 private:
  void ResetTree(std::string rootText);
  Status LoadIndex(Progress* progress, TreeScope scope);

  const RecordLabeller& labeller_;
  Clock clock_;
  LoadedFile file_;
  DatabaseTree tree_;
  SettingsSnapshot settings_;
  StatusPanels status_;
  MenuStates menus_;
  OutputFolders folders_;
  // Slots 0 and 1 start at 0 and are never reset; the others are reset per load.
  std::array<int, kKindCount> slots_{0, 0, -1, -1, -1, -1, -1, -1, -1, -1, -1};
  std::array<int, kKindCount> counters_{};
};

}  // namespace orchidlamp
