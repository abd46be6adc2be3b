#pragma once

// The per-user settings store: organisation and application "Orchidlamp", group
// "Options", keys TimeZone and ExportDelimiter, read with the open flow's
// defaults "GMT" and ",".

#include "core/settings.h"

namespace orchidlamp {

StoredSettings ReadStoredSettings();
void WriteStoredSettings(const StoredSettings& settings);

}  // namespace orchidlamp
