#include "editing/service_book_editor.h"

#include "core/file_io.h"
#include "core/hex_text.h"
#include "core/kinds.h"
#include "core/record_range.h"

namespace orchidlamp {
namespace {

// The record as it stands in the file: from its first database-id byte.
ByteView WholeRecord(const Workspace& ws, NodeId node) {
  const RecordSpan tag = TagOf(ws.tree(), node);
  return CheckedRange(ws.file().View(), tag.first - 7, tag.last);
}

Result<EditorSave> Write(const Workspace& ws, const Bytes& file, std::optional<Message> refusal) {
  EditorSave save;
  save.path = EditorOutputPath(ws);
  if (Status written = WriteInPlace(save.path, file); !written) return written.failure();
  if (refusal) save.messages.push_back(std::move(*refusal));
  save.messages.push_back(Message{"File saved as " + save.path, {}, MessageIcon::Information});
  return save;
}

}  // namespace

std::string EditorOutputPath(const Workspace& ws) {
  return ws.OutputFolder() + "OL_Export_" + DdHhNnSs(ws.clock()()) + ".ipd";
}

Result<std::optional<EditSB>> EditSB::Open(const Workspace& ws) {
  const DatabaseTree& tree = ws.tree();
  if (ws.selected == kNoNode || static_cast<std::size_t>(ws.selected) >= tree.size())
    return Fail(std::string(kNoServiceBookSelected), MessageIcon::Exclamation, std::string(kSelectRecordFirstTitle));
  const NodeId node = ws.selected;
  if (tree.Parent(node) == kNoNode || tree.Text(tree.Parent(node)) != InfoOf(Kind::ServiceBook).name)
    return std::optional<EditSB>{};
  return Guarded([&]() -> Result<std::optional<EditSB>> {
    EditSB editor;
    editor.node_ = ws.selected;
    editor.code_ = BytesToHex(WholeRecord(ws, node));
    editor.hrtnet = ws.hrtnet;
    editor.heading_ = "Edit the *" + tree.Text(node) + "* service book";
    return std::optional<EditSB>{std::move(editor)};
  });
}

Result<EditorSave> EditSB::Save(const Workspace& ws) const {
  return Guarded([&]() -> Result<EditorSave> {
    BuiltRecord built = BuildRecord();
    const Bytes file = HexToBytes(std::string(kServiceBookFilePrefixHex) + built.hex);
    return Write(ws, file, std::move(built.refusal));
  });
}

Result<EditorSave> EditSB::SaveAll(const Workspace& ws) const {
  return Guarded([&]() -> Result<EditorSave> {
    const DatabaseTree& tree = ws.tree();
    const NodeId selected = ws.selected;
    if (selected == kNoNode || static_cast<std::size_t>(selected) >= tree.size() ||
        tree.Parent(selected) == kNoNode)
      throw CommandError("No service-book record is selected in the tree");
    const NodeId parent = tree.Parent(selected);
    Bytes file = HexToBytes(kServiceBookFilePrefixHex);
    std::optional<Message> refusal;
    for (NodeId sibling : tree.Children(parent)) {
      if (sibling != selected) {
        Append(file, WholeRecord(ws, sibling));
        continue;
      }
      BuiltRecord built = BuildRecord();
      Append(file, HexToBytes(built.hex));
      refusal = std::move(built.refusal);
    }
    return Write(ws, file, std::move(refusal));
  });
}

}  // namespace orchidlamp
