#include "core/settings.h"

#include <array>
#include <cctype>
#include <cstdlib>
#include <utility>

namespace orchidlamp {

SettingsSnapshot DeriveSettings(const StoredSettings& stored) {
  SettingsSnapshot s;
  std::string tz = stored.timeZone;
  for (std::size_t at = tz.find("GMT"); at != std::string::npos; at = tz.find("GMT", at + 1)) tz.replace(at, 3, 1, '0');
  s.timeZoneText = tz;
  s.timeZoneHours = LeadingNumber(tz);
  s.delimiter = DelimiterFor(stored.exportDelimiter);
  return s;
}

std::string DelimiterFor(std::string_view stored) {
  static constexpr std::array<std::pair<std::string_view, std::string_view>, 8> kMap = {{
      {",", ","}, {";", ";"}, {"'", "'"}, {"TAB", "\t"}, {"SPACE", " "},
      {"< >", "> <"}, {"( )", ") ("}, {"{ }", "} {"},
  }};
  for (const auto& [text, separator] : kMap)
    if (text == stored) return std::string(separator);
  return ",";
}

double LeadingNumber(std::string_view text) {
  std::size_t i = 0;
  while (i < text.size() && (text[i] == ' ' || text[i] == '\t')) ++i;
  std::string number;
  if (i < text.size() && (text[i] == '+' || text[i] == '-')) number.push_back(text[i++]);
  bool digits = false;
  while (i < text.size() && std::isdigit(static_cast<unsigned char>(text[i]))) number.push_back(text[i++]), digits = true;
  if (i < text.size() && text[i] == '.') {
    number.push_back(text[i++]);
    while (i < text.size() && std::isdigit(static_cast<unsigned char>(text[i]))) number.push_back(text[i++]), digits = true;
  }
  return digits ? std::strtod(number.c_str(), nullptr) : 0.0;
}

}  // namespace orchidlamp
