#include "export/text_export.h"

#include "core/file_io.h"
#include "core/time_stamp.h"
#include "export/export_kinds.h"

namespace orchidlamp {
namespace {

constexpr std::string_view kBanner = "***********************************************************************";
constexpr std::size_t kTitleIndent = 27;
constexpr std::size_t kBlanksPerDepth = 4;
constexpr std::size_t kProgressEvery = 1024;
constexpr std::size_t kReservePerFileByte = 3;
constexpr std::size_t kReserveFloor = 64 * 1024;

bool Exists(const DatabaseTree& tree, NodeId id) { return id != kNoNode && static_cast<std::size_t>(id) < tree.size(); }

// The three walks over the tree, printing into one in-memory buffer that is
// written in a single write at the end.
class ExportWalk {
 public:
  ExportWalk(Workspace& ws, bool asText, Progress* progress)
      : ws_(ws), tree_(ws.tree()), asText_(asText), progress_(progress), context_(FormatContextOf(ws)) {}

  // An export of the whole tree runs to about twice the backup's size. Reserved
  // pages that are never written cost no memory, while growing by copies would
  // hold the old and the new buffer at once and copy the text again each time.
  void ReserveForWholeTree() { out_.reserve(ws_.file().bytes.size() * kReservePerFileByte + kReserveFloor); }

  void Print(std::string_view line) {
    out_ += line;
    out_ += "\r\n";
  }

  void Banner(std::string_view titleLine) {
    Print(kBanner);
    Print(titleLine);
    Print(kBanner);
  }

  void TitledBanner(std::string_view title) { Banner(std::string(kTitleIndent, ' ') + std::string(title)); }

  void ExportRecord(NodeId node) {
    if (!Exists(tree_, node)) return;
    const TreeNode& n = tree_[node];
    if (n.parent == kNoNode || !n.tag) return;
    if (const ExportKindRow* row = ExportRowByText(tree_[n.parent].text)) PrintRecord(*row, *n.tag);
  }

  // As many nodes as the group has children, from the first child's first sibling on.
  void ExportKind(NodeId group) {
    if (!Exists(tree_, group)) return;
    const TreeNode& g = tree_[group];
    NodeId n = g.firstChild == kNoNode ? kNoNode : tree_.FirstSibling(g.firstChild);
    for (std::int32_t i = 0; i < g.childCount && n != kNoNode; ++i, n = tree_[n].next) ExportRecord(n);
  }

  // A node, its descendants and its later siblings. The depth rises once per
  // level entered and falls once at the end of every chain of siblings, the
  // starting chain included: the net drift of one is the program's own.
  // Siblings are walked in a loop so a database of a million records does not
  // nest a million calls.
  void ExportTree(NodeId node) {
    for (NodeId id = Exists(tree_, node) ? node : kNoNode; id != kNoNode;) {
      const TreeNode& n = tree_[id];
      if (const ExportKindRow* row = ExportRowByText(n.text); row && !row->treeTitle.empty()) Banner(row->treeTitle);
      if (n.tag && n.parent != kNoNode)
        if (const ExportKindRow* row = ExportRowByText(tree_[n.parent].text)) PrintRecord(*row, *n.tag);
      if (n.firstChild != kNoNode) {
        ++ws_.exportDepth;
        ExportTree(n.firstChild);
      }
      if (n.next == kNoNode) {
        --ws_.exportDepth;
        break;
      }
      id = n.next;
    }
  }

  const std::string& text() const { return out_; }

 private:
  void PrintRecord(const ExportKindRow& row, const RecordSpan& span) {
    if (ws_.exportDepth > 0) out_.append(kBlanksPerDepth * static_cast<std::size_t>(ws_.exportDepth), ' ');
    out_ += row.format(ws_.Body(span), span, context_, asText_);
    out_ += "\r\n";
    if (++printed_ % kProgressEvery == 0) Report(progress_, printed_, tree_.size());
  }

  Workspace& ws_;
  const DatabaseTree& tree_;
  bool asText_;
  Progress* progress_;
  FormatContext context_;
  std::string out_;
  std::size_t printed_ = 0;
};

int CheckedScope(const ExportPanel& panel) {
  int scope = -1;
  for (int i = 0; i < kExportScopes; ++i)
    if (panel.checked[static_cast<std::size_t>(i)]) scope = i;
  return scope;
}

}  // namespace

std::string ExportPath(const Workspace& ws, ExportForm form) {
  return ws.OutputFolder() + "OL_Export_" + DdHhNnSs(ws.clock()()) + (form == ExportForm::Text ? ".txt" : ".csv");
}

Result<std::optional<ExportDone>> PressExport(Workspace& ws, const ExportPanel& panel, ExportForm form,
                                              Progress* progress) {
  const int scope = CheckedScope(panel);
  if (scope < 0) return std::optional<ExportDone>{};
  const bool asText = form == ExportForm::Text;
  const std::string path = ExportPath(ws, form);
  const DatabaseTree& tree = ws.tree();
  const NodeId selected = Exists(tree, ws.selected) ? ws.selected : kNoNode;

  ExportWalk walk(ws, asText, progress);
  std::optional<Failure> fault;
  try {
    if (scope == kScopeRecord) {
      if (const ExportKindRow* row = ExportRowBySelectedCaption(panel.captions[kScopeRecord])) {
        walk.TitledBanner(row->recordTitle);
        walk.ExportRecord(selected);
      }
    } else if (scope == kScopeKind) {
      if (const ExportKindRow* row = ExportRowByAllCaption(panel.captions[kScopeKind])) {
        walk.TitledBanner(asText ? row->kindTitleText : row->kindTitleCsv);
        if (!asText) walk.Print(row->csvHeader);
        walk.ExportKind(selected == kNoNode ? kNoNode : tree[selected].parent);
      }
    } else {
      walk.ReserveForWholeTree();
      walk.ExportTree(tree.Root());
    }
  } catch (const CommandError& e) {
    // What was printed before the fault stays in the file, as it always has.
    fault = Fail(e.what());
  }

  const Status written = WriteTruncating(path, TextBytes(walk.text()));
  if (!written) return written.failure();
  if (fault) return *fault;
  Report(progress, tree.size(), tree.size());
  return std::optional<ExportDone>{ExportDone{path, Message{"Export to: " + path + " is complete.", "", MessageIcon::None}}};
}

}  // namespace orchidlamp
