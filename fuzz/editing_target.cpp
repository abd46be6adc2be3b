#include <cstdio>
#include <vector>

#include "core/file_io.h"

#include "editing/merge.h"
#include "editing/merge_source.h"
#include "editing/selection_tree.h"
#include "editing/service_book_editor.h"
#include "editing/split.h"
#include "fuzz_scratch.h"
#include "hex_definitions.h"
#include "fuzz_targets.h"
#include "records/record_click.h"
#include "records/record_kinds.h"

namespace orchidlamp::fuzz {
namespace {

struct Toggle {
  bool secondTree;
  std::uint8_t node;  // taken modulo the tree's size
};

struct EditorSet {
  std::size_t box;
  std::string value;
};

// The input: a toggle count and the toggles, an editor-value count and the
// values, the service-book record to edit, then the backup's bytes.
struct EditingInput {
  std::vector<Toggle> toggles;
  std::vector<EditorSet> sets;
  std::uint8_t editedRecord = 0;
};

EditingInput ReadControls(ControlReader& control) {
  EditingInput input;
  for (std::size_t n = control.Byte() % 17; n > 0; --n) {
    const std::uint8_t b = control.Byte();
    input.toggles.push_back({(b & 0x80) != 0, control.Byte()});
  }
  for (std::size_t n = control.Byte() % 9; n > 0; --n) {
    const std::size_t box = control.Byte() % kServiceBookBoxes;
    input.sets.push_back({box, control.ShortText(40)});
  }
  input.editedRecord = control.Byte();
  return input;
}

void Tick(DatabaseTree& tree, std::uint8_t node) {
  if (tree.empty()) return;
  ToggleNodeCheck(tree, static_cast<NodeId>(node % tree.size()));
}

}  // namespace

int FuzzEditing(const std::uint8_t* data, std::size_t size) {
  ControlReader control(data, size);
  const EditingInput input = ReadControls(control);

  const KindLabeller labeller;
  Workspace ws(labeller);
  PointFoldersAtScratch(ws);
  const Status loaded = LoadScratchBackup(ws, control.rest(), control.restSize());
  if (!loaded) return 0;  // the dialogs cannot be opened on a file that did not load
  const std::string backupPath = ws.file().path;
  const std::string out = ws.OutputFolder() + "edited.ipd";

  DatabaseTree first = LoadSelectionTree(ws.tree());
  auto second = BrowseSecondFile(backupPath, labeller);
  if (!second) std::abort();  // the same bytes loaded once already
  for (const Toggle& t : input.toggles) Tick(t.secondTree ? second->tree : first, t.node);

  // The byte paths give exactly the bytes the writers are defined by, in memory
  // and through the file buffer alike.
  const MergeSource one{first, ws.file().View()}, two{second->tree, second->bytes};
  const Bytes split = BuildSplitFile(first, ws.file().View()), merged = BuildMergedFile(one, two);
  if (split != SplitByHex(first, ws.file().View()) || merged != MergeByHex(one, two)) std::abort();
  std::remove(out.c_str());
  if (!Split(first, ws.file().View(), out) || ReadWholeFile(out).value() != split) std::abort();
  std::remove(out.c_str());
  if (!Merge(one, two, out) || ReadWholeFile(out).value() != merged) std::abort();

  // The service-book editor on the chosen record node (any node: the editor
  // itself refuses what is no service book).
  ws.selected = static_cast<NodeId>(input.editedRecord % ws.tree().size());
  (void)ClickNode(ws, ws.selected);
  auto opened = EditSB::Open(ws);
  if (opened && opened.value()) {
    EditSB& editor = *opened.value();
    for (const EditorSet& set : input.sets) editor.hrtnet[set.box] = set.value;
    (void)Guarded([&]() -> Status {
      (void)editor.BuildRecord();
      return Ok();
    });
    (void)editor.Save(ws);
    (void)editor.SaveAll(ws);
  }
  return 0;
}

}  // namespace orchidlamp::fuzz
