#include "export/export_panel.h"

#include "export/export_kinds.h"

namespace orchidlamp {
namespace {

constexpr std::string_view kRefusalTitle = "Please select record first:";
constexpr std::string_view kRefusalText =
    "No SMS, Address Book, Tasks, Calendar, Phone Calls, AutoText record selected for export.\r\n"
    "Please select any single record then hit the export menu.";

}  // namespace

void ExportPanel::Check(ExportScope scope) {
  checked = {};
  checked[scope] = true;
}

Status PrepareExport(const Workspace& ws, ExportPanel& panel) {
  panel.optionVisible[kScopeRecord] = false;
  panel.optionVisible[kScopeKind] = false;

  const DatabaseTree& tree = ws.tree();
  const bool selected = ws.selected != kNoNode && static_cast<std::size_t>(ws.selected) < tree.size();
  const NodeId parent = selected ? tree[ws.selected].parent : kNoNode;
  const ExportKindRow* row = parent == kNoNode ? nullptr : ExportRowByText(tree[parent].text);
  if (!row)
    return Fail(std::string(kRefusalText), MessageIcon::Exclamation, std::string(kRefusalTitle));

  panel.captions[kScopeRecord] = std::string(row->selectedCaption);
  panel.captions[kScopeKind] = std::string(row->allCaption);
  panel.optionVisible[kScopeKind] = true;
  panel.optionVisible[kScopeRecord] = true;
  panel.optionVisible[kScopeTree] = true;
  panel.visible = true;
  return Ok();
}

}  // namespace orchidlamp
