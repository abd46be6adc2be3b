#include "generators/hostile_archives.h"

#include <zip.h>

#include <cstring>
#include <stdexcept>

#include "core/hex_text.h"
#include "core/ipd_format.h"

namespace orchidlamp::testing {
namespace {

Bytes ReadBack(zip_source_t* source) {
  zip_stat_t st;
  zip_stat_init(&st);
  if (zip_source_stat(source, &st) != 0 || zip_source_open(source) != 0) throw std::runtime_error("zip source");
  Bytes bytes(static_cast<std::size_t>(st.size));
  const zip_int64_t n = zip_source_read(source, bytes.data(), bytes.size());
  zip_source_close(source);
  if (n != static_cast<zip_int64_t>(bytes.size())) throw std::runtime_error("zip source read");
  return bytes;
}

std::uint32_t Le32At(const Bytes& b, std::size_t at) {
  return b[at] | (b[at + 1] << 8) | (b[at + 2] << 16) | (std::uint32_t{b[at + 3]} << 24);
}
std::uint16_t Le16At(const Bytes& b, std::size_t at) { return static_cast<std::uint16_t>(b[at] | (b[at + 1] << 8)); }
void Put32(Bytes& b, std::size_t at, std::uint32_t v) {
  for (int i = 0; i < 4; ++i) b[at + i] = static_cast<std::uint8_t>(v >> (8 * i));
}

// Calls `patch(offset of the header, offset of the name, name)` for the local
// and the central header of every entry (central entries after the locals).
template <class F>
void EachHeader(Bytes& zip, F patch) {
  for (std::size_t at = 0; at + 46 <= zip.size(); ++at) {
    const std::uint32_t sig = Le32At(zip, at);
    if (sig == 0x04034B50) {
      const std::size_t nameAt = at + 30;
      patch(at, nameAt, std::string(zip.begin() + nameAt, zip.begin() + nameAt + Le16At(zip, at + 26)), false);
      at = nameAt + Le16At(zip, at + 26) + Le16At(zip, at + 28) + Le32At(zip, at + 18) - 1;
    } else if (sig == 0x02014B50) {
      const std::size_t nameAt = at + 46;
      patch(at, nameAt, std::string(zip.begin() + nameAt, zip.begin() + nameAt + Le16At(zip, at + 28)), true);
    }
  }
}

// Both headers of `name` state `size` as the uncompressed size.
Bytes StatingSize(Bytes zip, const std::string& name, std::uint32_t size) {
  EachHeader(zip, [&](std::size_t at, std::size_t, const std::string& n, bool central) {
    if (n == name) Put32(zip, at + (central ? 24 : 22), size);
  });
  return zip;
}

// Both headers of `name` hold `renamed` instead (same length).
Bytes Renamed(Bytes zip, const std::string& name, const std::string& renamed) {
  EachHeader(zip, [&](std::size_t, std::size_t nameAt, const std::string& n, bool) {
    if (n == name) std::memcpy(zip.data() + nameAt, renamed.data(), renamed.size());
  });
  return zip;
}

Bytes Dat(const Bytes& records) {
  return Concat({HexToBytes(IpdHeaderHex(1)), LE16(6), TextZ("Memos"), records});
}

Bytes Manifest(const std::string& databases) {
  return Text("<?xml version=\"1.0\" encoding=\"UTF-8\"?><BlackBerry_Backup><NessusOSDevice><Databases>" + databases +
              "</Databases></NessusOSDevice></BlackBerry_Backup>\r\n");
}

}  // namespace

Bytes ZipBytes(const ArchiveFiles& files, const char* password) {
  zip_error_t error;
  zip_error_init(&error);
  zip_source_t* source = zip_source_buffer_create(nullptr, 0, 0, &error);
  zip_t* za = source ? zip_open_from_source(source, ZIP_TRUNCATE, &error) : nullptr;
  if (!za) throw std::runtime_error("zip_open_from_source");
  zip_source_keep(source);
  for (const auto& [name, bytes] : files) {
    zip_source_t* data = zip_source_buffer(za, bytes.data(), bytes.size(), 0);
    const zip_int64_t index = data ? zip_file_add(za, name.c_str(), data, ZIP_FL_ENC_RAW) : -1;
    if (index < 0 || (password && zip_file_set_encryption(za, static_cast<zip_uint64_t>(index), ZIP_EM_AES_256,
                                                          password) != 0))
      throw std::runtime_error("zip entry " + name + ": " + zip_strerror(za));
  }
  if (zip_close(za) != 0) throw std::runtime_error("zip_close");
  Bytes bytes = ReadBack(source);
  zip_source_free(source);
  return bytes;
}

std::vector<std::pair<std::string, Bytes>> HostileArchives() {
  // .dat records count databases from 1.
  const Bytes record = RecordBytes(FieldRecord(1, {{1, TextZ("memo")}}));
  const Bytes dat = Dat(record);
  const Bytes one = Manifest("<Database uid=\"1\">Memos</Database>");
  const Bytes good = ZipBytes({{"Manifest.xml", one}, {"Databases/1.dat", dat}});
  std::string million;
  million.reserve(20'000'000);
  for (int i = 0; i < 1'000'000; ++i) million += "<Database uid=\"1\"/>";
  return {
      {"inflates-past-size", StatingSize(good, "Databases/1.dat", 8)},
      {"encrypted", ZipBytes({{"Manifest.xml", one}, {"Databases/1.dat", dat}}, "secret")},
      {"same-name", Renamed(ZipBytes({{"Manifest.xml", one}, {"1.dat", dat}, {"2.dat", dat}}), "2.dat", "1.dat")},
      {"dotdot-backslash", ZipBytes({{"Manifest.xml", one}, {"Databases\\..\\..\\1.dat", dat}})},
      {"drive-letter", ZipBytes({{"Manifest.xml", one}, {"C:/Databases/1.dat", dat}})},
      // A reader that stops at the NUL sees "1.dat"; the whole name leaves the folder.
      {"nul-in-name",
       Renamed(ZipBytes({{"Manifest.xml", one}, {"1.dat_../../x", dat}}), "1.dat_../../x",
               std::string("1.dat\0../../x", 13))},
      {"million-databases", ZipBytes({{"Manifest.xml", Manifest(million)}})},
      {"dat-states-4gib", StatingSize(good, "Databases/1.dat", 0xFFFFFFFEu)},
      {"record-states-4gib",
       ZipBytes({{"Manifest.xml", one}, {"1.dat", Dat(Concat({LE16(1), LE32(0xFFFFFFFFu), Bytes{0}}))}})},
      {"bbb-in-bbb", ZipBytes({{"Manifest.xml", one}, {"1.dat", dat}, {"inner.bbb", good}})},
      {"bbb-as-mac-ipd",
       ZipBytes({{"BlackBerry_Backup.xml", Text("<?xml version=\"1.0\"?><BlackBerry_Backup/>")},
                 {"Databases.ipd", good}})},
  };
}

Bytes ManyEntriesArchive(std::size_t count) {
  ArchiveFiles files;
  files.reserve(count);
  for (std::size_t i = 1; i <= count; ++i) files.push_back({std::to_string(i) + ".dat", {}});
  return ZipBytes(files);
}

}  // namespace orchidlamp::testing
