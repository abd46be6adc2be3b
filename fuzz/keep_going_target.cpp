#include "core/file_io.h"
#include "editing/selection_tree.h"
#include "editing/split.h"
#include "export/export_panel.h"
#include "export/media_extraction.h"
#include "export/text_export.h"
#include "fuzz_scratch.h"
#include "fuzz_targets.h"
#include "records/record_kinds.h"

namespace orchidlamp::fuzz {

// What `--keep-going` does with a backup whose walk stopped part way: the menus
// are open on the part that was read, and export, media and split run on it.
// Whole backups are left to the other targets.
int FuzzKeepGoing(const std::uint8_t* data, std::size_t size) {
  ControlReader control(data, size);
  const std::uint8_t ticks = control.Byte();

  const KindLabeller labeller;
  Workspace ws(labeller);
  PointFoldersAtScratch(ws);
  const Status loaded = LoadScratchBackup(ws, control.rest(), control.restSize());
  if (loaded || !ws.menus().saveAs) return 0;

  ExportPanel panel;
  panel.Check(kScopeTree);
  for (ExportForm form : {ExportForm::Text, ExportForm::Csv}) {
    auto done = PressExport(ws, panel, form);
    if (!done) std::abort();  // the scratch output folder is writable
  }
  (void)CreateFolder(ws.ProgramFolder() + "media");
  (void)ExtractJpgImages(ws);

  DatabaseTree selection = LoadSelectionTree(ws.tree());
  if (!selection.empty()) ToggleNodeCheck(selection, static_cast<NodeId>(ticks % selection.size()));
  (void)Split(selection, ws.file().View(), ws.OutputFolder() + "part.ipd");
  return 0;
}

}  // namespace orchidlamp::fuzz
