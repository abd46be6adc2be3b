#include <cstdlib>
#include <string>
#include <vector>

#include "core/file_io.h"
#include "core/hex_text.h"
#include "core/settings.h"
#include "export/export_panel.h"
#include "export/media_extraction.h"
#include "export/record_formatters.h"
#include "export/text_export.h"
#include "fuzz_scratch.h"
#include "fuzz_targets.h"
#include "records/record_kinds.h"

namespace orchidlamp::fuzz {
namespace {

// The media scan searches the bytes directly; its hits must be those of the
// search on hex text, a match of the marker's digits that starts on a byte
// boundary, overlapping hits and hits on the last bytes included.
void CheckScanAgainstHexSearch(ByteView bytes) {
  static const std::vector<std::string> kMarkers = {"89504E470D0A1A0A0000000D49484452", "49454E44",
                                                    "FFD8FFE000104A46494600", "FFD9", "FFFF"};
  const std::string hex = BytesToHex(bytes);
  for (const std::string& marker : kMarkers) {
    std::vector<std::size_t> byHex;
    for (std::size_t at = hex.find(marker); at != std::string::npos; at = hex.find(marker, at + 1))
      if (at % 2 == 0) byHex.push_back(at / 2);
    const Bytes pattern = HexToBytes(marker);
    if (FindAll(bytes, pattern) != byHex) std::abort();
  }
}

}  // namespace

int FuzzExport(const std::uint8_t* data, std::size_t size) {
  // The first byte picks the delimiter's first character and the export depth.
  ControlReader control(data, size);
  const std::uint8_t choice = control.Byte();

  const KindLabeller labeller;
  Workspace ws(labeller);
  PointFoldersAtScratch(ws);
  (void)LoadScratchBackup(ws, control.rest(), control.restSize());
  ws.exportDepth = static_cast<int>(choice % 5) - 2;

  FormatContext context = FormatContextOf(ws);
  context.delimiter = std::string(1, static_cast<char>(choice));
  const DatabaseTree& tree = ws.tree();
  for (NodeId id = 0; id < static_cast<NodeId>(tree.size()); ++id) {
    const auto tag = tree.Tag(id);
    if (!tag) continue;
    const ByteView body = ws.Body(*tag);
    for (bool asText : {true, false}) {
      for (int k = 0; k < kKindCount; ++k)
        if (const KindSpec& kind = SpecOf(static_cast<Kind>(k)); kind.HasMembers())
          (void)FormatRecord(kind, body, *tag, context, asText);
    }
  }

  // The export menu on the first record, then the whole tree in both forms.
  ExportPanel panel;
  for (NodeId id = 0; id < static_cast<NodeId>(tree.size()); ++id) {
    if (!tree.Tag(id)) continue;
    ws.selected = id;
    if (PrepareExport(ws, panel)) {
      panel.Check(kScopeKind);
      (void)PressExport(ws, panel, (choice & 1) ? ExportForm::Csv : ExportForm::Text);
    }
    break;
  }
  panel.Check(kScopeTree);
  for (ExportForm form : {ExportForm::Text, ExportForm::Csv}) {
    auto done = PressExport(ws, panel, form);
    if (!done) std::abort();  // the scratch output folder is writable
  }

  // Media: pictures anywhere in the bytes, saved under the program folder.
  CheckScanAgainstHexSearch(ByteView(control.rest(), control.restSize()));
  (void)CreateFolder(ws.ProgramFolder() + "media");
  (void)ExtractPngImages(ws);
  (void)ExtractJpgImages(ws);
  return 0;
}

}  // namespace orchidlamp::fuzz
