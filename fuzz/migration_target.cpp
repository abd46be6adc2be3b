#include <libical/ical.h>
#include <libxml/parser.h>

#include <array>
#include <cstdlib>
#include <filesystem>

#include "core/file_io.h"
#include "export/migration.h"
#include "fuzz_scratch.h"
#include "fuzz_targets.h"
#include "records/record_kinds.h"

namespace orchidlamp::fuzz {
namespace {

// Code pages of different shapes: the default, another single-byte one, a
// multi-byte one, and one that reads every byte pair as a character.
constexpr std::array<const char*, 4> kCharsets = {"windows-1256", "iso-8859-7", "SHIFT_JIS", "UTF-16BE"};

std::string ReadText(const std::string& path) {
  auto bytes = ReadWholeFile(path);
  if (!bytes) std::abort();  // the run said it wrote this file
  return std::string(bytes->begin(), bytes->end());
}

// Every physical line within 75 octets, ending in CR LF, and no continuation
// line starting inside a UTF-8 sequence.
void CheckFolded(const std::string& text) {
  for (std::size_t from = 0; from < text.size();) {
    const std::size_t end = text.find("\r\n", from);
    if (end == std::string::npos || end - from > 75) std::abort();
    if (text[from] == ' ' && end > from + 1 && (static_cast<unsigned char>(text[from + 1]) & 0xC0) == 0x80)
      std::abort();
    from = end + 2;
  }
}

void CheckXml(const std::string& text) {
  xmlDocPtr doc = xmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr, nullptr,
                                XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING);
  if (!doc) std::abort();
  xmlFreeDoc(doc);
}

void CheckCalendar(const std::string& text, std::size_t count) {
  icalcomponent* cal = icalparser_parse_string(text.c_str());
  if (!cal) std::abort();
  const std::size_t parsed = static_cast<std::size_t>(icalcomponent_count_components(cal, ICAL_VEVENT_COMPONENT) +
                                                      icalcomponent_count_components(cal, ICAL_VTODO_COMPONENT));
  icalcomponent_free(cal);
  if (parsed != count) std::abort();
}

}  // namespace

int FuzzMigration(const std::uint8_t* data, std::size_t size) {
  // The first byte picks the code page (low two bits) and, when its high bits
  // are set, the kinds to write.
  ControlReader control(data, size);
  const std::uint8_t choice = control.Byte();

  const KindLabeller labeller;
  Workspace ws(labeller, [] { return std::time_t{1234567890}; });
  (void)LoadScratchBackup(ws, control.rest(), control.restSize());

  MigrationOptions options;
  options.outDir = FreshScratchSubfolder("migration");
  std::error_code error;
  std::filesystem::remove_all(options.outDir + "/memos", error);
  options.charset = kCharsets[choice & 3];
  for (std::size_t i = 0; i < kMigrateKindCount; ++i)
    if (choice >> 2 & (1u << (i % 6))) options.only.push_back(static_cast<MigrateKind>(i));

  auto report = Migrate(ws, options);
  if (!report) std::abort();  // the scratch folder is writable
  for (const MigratedFile& file : report->files) {
    const std::string path = options.outDir + "/" + file.name;
    if (file.name == "contacts.vcf") CheckFolded(ReadText(path));
    if (file.name == "calendar.ics") CheckCalendar(ReadText(path), file.count);
    if (file.name == "messages.xml" || file.name == "calls.xml") CheckXml(ReadText(path));
    if (file.name == "memos/") {
      std::size_t memos = 0;
      for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator(path)) ++memos;
      if (memos != file.count) std::abort();
    }
  }
  return 0;
}

}  // namespace orchidlamp::fuzz
