#include "export/export_panel.h"

#include "export/record_formatters.h"

namespace orchidlamp {
namespace {

constexpr std::string_view kRefusalTitle = "Please select record first:";
constexpr std::string_view kRefusalText =
    "No SMS, Address Book, Tasks, Calendar, Phone Calls, AutoText record selected for export.\r\n"
    "Please select any single record then hit the export menu.";

}  // namespace

const KindSpec* KindBySelectedCaption(std::string_view caption) {
  for (int k = 0; k < kKindCount; ++k) {
    const KindSpec& kind = SpecOf(static_cast<Kind>(k));
    const ExportSpec& e = kind.form->exported;
    if (!e.recordTitle.empty() && e.selectedCaption == caption) return &kind;
  }
  return nullptr;
}

const KindSpec* KindByAllCaption(std::string_view caption) {
  for (int k = 0; k < kKindCount; ++k) {
    const KindSpec& kind = SpecOf(static_cast<Kind>(k));
    const ExportSpec& e = kind.form->exported;
    if (!e.kindTitleText.empty() && e.allCaption == caption) return &kind;
  }
  return nullptr;
}

void ExportPanel::Check(ExportScope scope) {
  checked = {};
  checked[scope] = true;
}

Status PrepareExport(const Workspace& ws, ExportPanel& panel) {
  panel.optionVisible[kScopeRecord] = false;
  panel.optionVisible[kScopeKind] = false;

  const DatabaseTree& tree = ws.tree();
  const bool selected = ws.selected != kNoNode && static_cast<std::size_t>(ws.selected) < tree.size();
  const NodeId parent = selected ? tree.Parent(ws.selected) : kNoNode;
  const KindSpec* kind = parent == kNoNode ? nullptr : ExportedKindByText(tree.Text(parent));
  if (!kind)
    return Fail(std::string(kRefusalText), MessageIcon::Exclamation, std::string(kRefusalTitle));

  panel.captions[kScopeRecord] = std::string(kind->form->exported.selectedCaption);
  panel.captions[kScopeKind] = std::string(kind->form->exported.allCaption);
  panel.optionVisible[kScopeKind] = true;
  panel.optionVisible[kScopeRecord] = true;
  panel.optionVisible[kScopeTree] = true;
  panel.visible = true;
  return Ok();
}

}  // namespace orchidlamp
