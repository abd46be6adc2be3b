#pragma once

// The two export buttons: a text report or a CSV file of the selected record,
// of every record of its kind, or of the whole tree, written beside the open
// backup as "OL_Export_" + ddhhnnss + ".txt" / ".csv".
//
// Every print is one line ending in CR LF. Record lines are indented by
// 4 x ws.exportDepth blanks (none while it is negative). Only the whole-tree
// export moves exportDepth, and it leaves it one lower than it found it, so later
// exports of the same session indent differently. The drift is deliberate:
// users' files look that way.

#include <optional>
#include <string>

#include "core/result.h"
#include "core/progress.h"
#include "core/workspace.h"
#include "export/export_panel.h"

namespace orchidlamp {

enum class ExportForm { Text, Csv };

struct ExportDone {
  std::string path;
  Message message;  // "Export to: " + path + " is complete.", no icon, no title
};

// Reads the scope from the panel (the highest checked option wins) and writes
// the file, created or truncated, in one write. With no option checked nothing
// happens at all: the result holds nullopt. A caption that matches no kind
// (bookmarks) gives an empty file and the completion message all the same.
// A file that cannot be written is a failure naming it.
Result<std::optional<ExportDone>> PressExport(Workspace& ws, const ExportPanel& panel, ExportForm form,
                                              Progress* progress = nullptr);

// "OL_Export_" + ddhhnnss of now + ".txt" or ".csv" in the output folder. Two
// exports within one second share the name; month and year are not part of it.
std::string ExportPath(const Workspace& ws, ExportForm form);

}  // namespace orchidlamp
