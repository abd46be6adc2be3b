#pragma once

// The per-user settings store: organisation and application "Orchidlamp", group
// "Options", keys TimeZone, ExportDelimiter and MigrateCharset, read with the
// defaults "GMT", "," and "windows-1256".

#include "core/settings.h"

namespace orchidlamp {

StoredSettings ReadStoredSettings();
void WriteStoredSettings(const StoredSettings& settings);

}  // namespace orchidlamp
