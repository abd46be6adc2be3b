#pragma once

// The export panel without widgets: what the window binds its frame, three
// option buttons and two export buttons to. Only the option captions (and the
// workspace's exportDepth) outlive one export.

#include <array>
#include <string>
#include <string_view>

#include "core/result.h"
#include "core/workspace.h"
#include "records/record_kinds.h"

namespace orchidlamp {

inline constexpr std::string_view kExportPanelCaption = "Export to Text/CSV File";
inline constexpr std::string_view kExportOptionsCaption = "Export to Text";
inline constexpr std::string_view kExportAllCaption = "Export All";
inline constexpr std::string_view kExportTextButton = "Export to Text file";
inline constexpr std::string_view kExportCsvButton = "Export to CSV file";
inline constexpr std::string_view kExportCancelButton = "Cancel";

enum ExportScope : int { kScopeRecord = 0, kScopeKind = 1, kScopeTree = 2 };
inline constexpr int kExportScopes = 3;

struct ExportPanel {
  bool visible = false;
  std::array<std::string, kExportScopes> captions{{"", "", std::string(kExportAllCaption)}};
  std::array<bool, kExportScopes> optionVisible{};
  // Option buttons: the window keeps one checked at a time, but the export reads
  // all three and the highest checked one wins.
  std::array<bool, kExportScopes> checked{};

  // A click on an option button: it alone is checked.
  void Check(ExportScope scope);
  // The Cancel button.
  void Cancel() { visible = false; }
};

// The first kind (in kind order) whose option-0 / option-1 caption is this text
// and that the export recognises for that scope; null otherwise (bookmarks
// included).
const KindSpec* KindBySelectedCaption(std::string_view caption);
const KindSpec* KindByAllCaption(std::string_view caption);

// The export menu command: sets the captions for the kind of the selected
// node's parent and shows the panel. A selection that is no record of an
// exportable kind is refused with the returned failure (exclamation icon,
// its own title); options 0 and 1 are then hidden and the panel is left as it was.
Status PrepareExport(const Workspace& ws, ExportPanel& panel);

}  // namespace orchidlamp
