#pragma once

// The open flow's last steps: a desktop backup (BBB) is first turned into a
// temporary IPD, then the IPD is loaded into the workspace.

#include <string>

#include "core/result.h"
#include "core/progress.h"
#include "core/settings.h"
#include "core/workspace.h"

namespace orchidlamp {

enum class BackupKind { Ipd, Bbb };

// By content: a file that starts with a zip local-file signature is a BBB.
BackupKind BackupKindOf(const std::string& path);

// For a BBB the workspace then holds the temporary IPD under the system
// temporary folder: its path is the root node's text and the folder exports go
// to. A BBB that cannot be converted is loaded as an IPD; when that fails too,
// the loader's failure carries the desktop-backup reason as its detail.
Status OpenBackup(Workspace& ws, const std::string& path, BackupKind kind, const StoredSettings& settings,
                  Progress* progress = nullptr, TreeScope scope = TreeScope::Records);

}  // namespace orchidlamp
