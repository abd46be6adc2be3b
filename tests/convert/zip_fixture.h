#pragma once

// Desktop-backup fixtures: zip archives from named byte strings (in the order
// given, any names at all, so hostile archives are as easy to make as good
// ones) and the XML files that go with the .dat files of the shared builder.

#include <zip.h>

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "support/ipd_builder.h"

namespace orchidlamp::testing {

using ZipEntries = std::vector<std::pair<std::string, Bytes>>;

inline void WriteZip(const std::string& path, const ZipEntries& entries) {
  int code = 0;
  zip_t* za = zip_open(path.c_str(), ZIP_CREATE | ZIP_TRUNCATE, &code);
  if (!za) throw std::runtime_error("zip_open failed for " + path);
  for (const auto& [name, bytes] : entries) {
    // The buffer stays alive until zip_close below: `entries` outlives it.
    zip_source_t* source = zip_source_buffer(za, bytes.data(), bytes.size(), 0);
    if (!source || zip_file_add(za, name.c_str(), source, ZIP_FL_ENC_RAW) < 0) {
      if (source) zip_source_free(source);
      zip_discard(za);
      throw std::runtime_error("zip_file_add failed for " + name);
    }
  }
  if (zip_close(za) != 0) zip_discard(za), throw std::runtime_error("zip_close failed for " + path);
}

inline Bytes ManifestFor(const std::vector<std::string>& uids) {
  std::string xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?><BlackBerry_Backup><NessusOSDevice><Databases>";
  for (const std::string& uid : uids) xml += "<Database uid=\"" + uid + "\">x</Database>";
  return Text(xml + "</Databases></NessusOSDevice></BlackBerry_Backup>\r\n");
}

inline Bytes MacXml() {
  return Text("<?xml version=\"1.0\" encoding=\"UTF-8\"?><BlackBerry_Backup><Platform>Mac</Platform>"
              "<Databases></Databases></BlackBerry_Backup>\r\n");
}

}  // namespace orchidlamp::testing
