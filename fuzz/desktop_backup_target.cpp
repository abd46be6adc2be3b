#include <algorithm>
#include <cstring>
#include <string_view>
#include <vector>

#include "convert/desktop_backup_reader.h"
#include "convert/desktop_backup_writer.h"
#include "convert/xml_document.h"
#include "convert/zip_archive.h"
#include "core/settings.h"
#include "fuzz_scratch.h"
#include "hex_definitions.h"
#include "fuzz_targets.h"
#include "records/record_kinds.h"

namespace orchidlamp::fuzz {
namespace {

// Cuts the parts of a made-up archive apart.
constexpr std::string_view kPartSeparator = "\n@@\n";
constexpr std::uint8_t kZipSignature[] = {0x50, 0x4B, 0x03, 0x04};

// Small floors keep an inflate bomb from filling the disk while fuzzing; the
// checks are the same ones the real limits go through.
constexpr ExtractLimits kFuzzLimits{20, 8u << 20, 8u << 20, 512};

std::time_t FixedTime() { return 1234567890; }

Bytes Concat(Bytes head, const Bytes& tail) {
  Append(head, tail);
  return head;
}

std::vector<std::string_view> SplitParts(std::string_view text) {
  std::vector<std::string_view> parts;
  while (parts.size() < 16) {
    const std::size_t at = text.find(kPartSeparator);
    parts.push_back(text.substr(0, at));
    if (at == std::string_view::npos) break;
    text.remove_prefix(at + kPartSeparator.size());
  }
  return parts;
}

// Converts the archive and loads the IPD it gives, as the open flow does.
void ConvertAndLoad(const std::string& archive) {
  const std::string tempRoot = FreshScratchSubfolder("convert");
  auto ipd = ConvertDesktopBackup(archive, FixedTime, tempRoot, nullptr, kFuzzLimits);
  if (!ipd) {
    if (ipd.failure().message.text.empty()) std::abort();
    return;
  }
  const KindLabeller labeller;
  Workspace ws(labeller);
  (void)ws.Load(ipd.value(), StoredSettings{});
}

// The .dat reader gives what its definition gives, or refuses the file whole
// where the definition stops, adding nothing.
void CheckDatReader(ByteView dat, const std::string& name) {
  DatabaseParts parts{Bytes{1, 2}, Bytes{3}};
  const Status read = AppendDatabaseBytes(dat, name, parts);
  const auto expected = DatPartsByHex(dat);
  if (read.ok() != expected.has_value()) std::abort();
  const Bytes names = Concat(Bytes{1, 2}, expected ? expected->first : Bytes{});
  const Bytes records = Concat(Bytes{3}, expected ? expected->second : Bytes{});
  if (parts.names != names || parts.records != records) std::abort();
}

// The .dat files the Windows writer makes of an IPD are the ones their
// definition gives, and it refuses exactly where the definition stops.
// The archive reads each .dat in pieces of libzip's choosing: pieces of 1 to 7
// bytes cut record ids apart wherever they can be.
void CheckDatWriter(ByteView ipd) {
  std::vector<Bytes> dats;
  const auto summaries = SummarizeForSave(ipd, &dats);
  const auto expected = DatsByHex(ipd);
  if (summaries.ok() != expected.has_value() || (expected && dats != *expected)) std::abort();
  std::vector<DatLayout> layouts;
  if (LayOutDats(ipd, layouts).ok() != summaries.ok() || layouts.size() != dats.size()) std::abort();
  for (std::size_t i = 0; i < layouts.size(); ++i) {
    DatContent content(ipd, layouts[i]);
    Bytes pieced(layouts[i].size + 8);
    std::size_t at = 0;
    for (std::size_t n = 1 + i % 7; at < pieced.size(); n = n % 7 + 1) {
      const std::size_t given = content.Read(pieced.data() + at, std::min(n, pieced.size() - at));
      if (given == 0) break;
      at += given;
    }
    pieced.resize(at);
    if (content.Size() != dats[i].size() || pieced != dats[i]) std::abort();
  }
}

// Manifest (Windows kind) or BlackBerry_Backup.xml (Mac kind) first, then the
// .dat files or the Mac kind's IPD, zipped and converted. The .dat reader and
// the XML reader also get their parts directly.
void MadeUpArchive(const std::uint8_t* data, std::size_t size) {
  ControlReader control(data, size);
  const std::uint8_t shape = control.Byte();
  const bool mac = (shape & 1) != 0;
  const std::string_view text(reinterpret_cast<const char*>(control.rest()), control.restSize());
  const std::vector<std::string_view> parts = SplitParts(text);

  const std::string folder = FreshScratchSubfolder("parts");
  std::vector<ArchiveEntry> entries;
  for (std::size_t i = 0; i < parts.size(); ++i) {
    const std::string file = "part" + std::to_string(i);
    const std::string path = WriteScratchFile("parts/" + file,
                                              reinterpret_cast<const std::uint8_t*>(parts[i].data()), parts[i].size());
    std::string name;
    if (i == 0) {
      name = std::string(mac ? kMacBackupXml : kManifestXml);
      if (auto xml = XmlDocument::Load(path)) (void)xml->SelectEach(std::string(kManifestDatabasesXPath), "@uid");
    } else if (mac) {
      name = "Databases/" + std::string(kMacDatabasesIpd);
      CheckDatWriter(ByteView(reinterpret_cast<const std::uint8_t*>(parts[i].data()), parts[i].size()));
    } else {
      name = "Databases/" + std::to_string(i) + ".dat";
      CheckDatReader(ByteView(reinterpret_cast<const std::uint8_t*>(parts[i].data()), parts[i].size()), name);
    }
    // Both kinds' XML in one archive when asked: the Windows kind must win.
    if (i == 0 && (shape & 2)) entries.push_back({std::string(mac ? kManifestXml : kMacBackupXml), path});
    entries.push_back({name, path});
  }
  const std::string archive = ScratchFolder() + "/made.bbb";
  if (!CreateArchive(archive, entries)) return;
  ConvertAndLoad(archive);
}

}  // namespace

int FuzzDesktopBackup(const std::uint8_t* data, std::size_t size) {
  if (size >= sizeof kZipSignature && std::memcmp(data, kZipSignature, sizeof kZipSignature) == 0) {
    ConvertAndLoad(WriteScratchFile("input.bbb", data, size));
    return 0;
  }
  MadeUpArchive(data, size);
  return 0;
}

}  // namespace orchidlamp::fuzz
