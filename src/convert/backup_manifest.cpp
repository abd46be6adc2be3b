#include "convert/backup_manifest.h"

namespace orchidlamp {
namespace {

constexpr std::string_view kDeclaration = R"(<?xml version="1.0" encoding="UTF-8"?>)";
// The client, device and platform values are constants of this program, the
// same in every file; the pin is a placeholder, not the device's own.
constexpr std::string_view kManifestHead =
    R"(<BlackBerry_Backup><Version>2.0</Version><Client platform="windows" osversion="Microsoft Windows NT 6.1.7600.0" dtmversion="7.0.0.32" /><SourceDevice pin="40404040" hwid="5001807"><Platform type="BlackBerry" version="6.4.0.120" /></SourceDevice><NessusOSDevice><Databases>)";
constexpr std::string_view kManifestTail = "</Databases></NessusOSDevice></BlackBerry_Backup>\r\n";
constexpr std::string_view kMacHead =
    "<BlackBerry_Backup><Version>1.0</Version><Platform>Mac</Platform><Encryption><salt></salt></Encryption>"
    "<Databases>";
constexpr std::string_view kMacTail = "</Databases></BlackBerry_Backup>\r\n";

}  // namespace

std::string ManifestXml(const std::vector<DatabaseSummary>& databases) {
  std::string xml(kDeclaration);
  xml += kManifestHead;
  for (std::size_t i = 0; i < databases.size(); ++i) {
    xml += "<Database uid=\"" + std::to_string(i + 1) + "\" recordcount=\"" +
           std::to_string(databases[i].recordCount) + "\">";
    xml += databases[i].name;
    xml += "</Database>";
  }
  xml += kManifestTail;
  return xml;
}

std::string MacBackupXml(const std::vector<DatabaseSummary>& databases) {
  std::string xml(kDeclaration);
  xml += kMacHead;
  for (const DatabaseSummary& db : databases) {
    xml += "<Database count=\"" + std::to_string(db.recordCount) + "\">";
    xml += db.name;
    xml += "</Database>";
  }
  xml += kMacTail;
  return xml;
}

}  // namespace orchidlamp
