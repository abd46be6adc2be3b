#pragma once

// The two user settings as stored texts, and the values derived from them when a
// file is opened. The core takes these values; where they are stored is the
// front ends' business.

#include <string>
#include <string_view>

namespace orchidlamp {

struct StoredSettings {
  std::string timeZone = "GMT";       // "-11" ... "-1", "GMT", "+1" ... "+11"
  std::string exportDelimiter = ",";  // an entry of the delimiter list
  std::string migrateCharset = "windows-1256";  // the code page migrated 8-bit text is read in
};

// What the open flow derives: the time-zone text with "GMT" replaced by "0", its
// number of hours, and the CSV separator.
struct SettingsSnapshot {
  std::string timeZoneText = "0";
  double timeZoneHours = 0.0;
  std::string delimiter = ",";
};

SettingsSnapshot DeriveSettings(const StoredSettings& stored);

// The separator for a stored delimiter text. The bracket pairs are used reversed,
// and anything unknown (the list's own "' " entry among them) falls back to ",".
std::string DelimiterFor(std::string_view stored);

// The leading decimal number of a text (sign, digits, point, digits); 0 when none.
double LeadingNumber(std::string_view text);

}  // namespace orchidlamp
