#pragma once

// The open flow's last steps: a desktop backup (BBB) is first turned into a
// temporary IPD, then the IPD is loaded into the workspace.

#include <string>

#include "core/message.h"
#include "core/progress.h"
#include "core/settings.h"
#include "core/workspace.h"

namespace orchidlamp {

enum class BackupKind { Ipd, Bbb };

// By content: a file that starts with a zip local-file signature is a BBB.
BackupKind BackupKindOf(const std::string& path);

Status OpenBackup(Workspace& ws, const std::string& path, BackupKind kind, const StoredSettings& settings,
                  Progress* progress = nullptr);

}  // namespace orchidlamp
