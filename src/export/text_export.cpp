#include "export/text_export.h"

#include "core/file_io.h"
#include "core/time_stamp.h"
#include "export/record_formatters.h"

namespace orchidlamp {
namespace {

constexpr std::string_view kBanner = "***********************************************************************";
constexpr std::size_t kTitleIndent = 27;
constexpr std::size_t kBlanksPerDepth = 4;
constexpr std::size_t kProgressEvery = 1024;
// The text goes to the file whenever this much has gathered, so an export of
// any size holds one small buffer rather than the whole text; the file's own
// buffer is no larger. Bigger buffers write no faster.
constexpr std::size_t kFlushAt = std::size_t{1} << 20;

bool Exists(const DatabaseTree& tree, NodeId id) { return id != kNoNode && static_cast<std::size_t>(id) < tree.size(); }

// The three walks over the tree, printing into one buffer that goes out to the
// export file whenever it fills.
class ExportWalk {
 public:
  ExportWalk(Workspace& ws, bool asText, Progress* progress, BufferedFileWriter& file)
      : ws_(ws),
        tree_(ws.tree()),
        asText_(asText),
        progress_(progress),
        context_(FormatContextOf(ws)),
        formatter_(context_),
        file_(file) {
    out_.reserve(kFlushAt + kFlushAt / 4);
  }

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
    const NodeId parent = tree_.Parent(node);
    const auto tag = tree_.Tag(node);
    if (parent == kNoNode || !tag) return;
    if (const KindSpec* kind = KindOfParent(parent)) PrintRecord(*kind, *tag);
  }

  // The group's children, first to last.
  void ExportKind(NodeId group) {
    if (!Exists(tree_, group)) return;
    for (NodeId n : tree_.Children(group)) ExportRecord(n);
  }

  // A node, its descendants and its later siblings. The depth rises once per
  // level entered and falls once at the end of every chain of siblings, the
  // starting chain included: the net drift of one is the program's own.
  // Siblings are walked in a loop so a database of a million records does not
  // nest a million calls.
  void ExportTree(NodeId node) {
    if (!Exists(tree_, node)) return;
    const std::vector<NodeId>& chain = tree_.Children(tree_.Parent(node));
    for (auto at = static_cast<std::size_t>(tree_.Row(node)); at < chain.size(); ++at) {
      const NodeId id = chain[at];
      // A record's label is its text too: one that reads as a database name gets the banner.
      if (const KindSpec* kind = ExportedKindByText(tree_.Text(id))) Banner(kind->form->exported.treeTitle);
      const NodeId parent = tree_.Parent(id);
      if (const auto tag = tree_.Tag(id); tag && parent != kNoNode)
        if (const KindSpec* kind = KindOfParent(parent)) PrintRecord(*kind, *tag);
      if (const NodeId first = tree_.FirstChild(id); first != kNoNode) {
        ++ws_.exportDepth;
        ExportTree(first);
      }
    }
    --ws_.exportDepth;
  }

  // Writes out what is still buffered.
  void Flush() {
    file_.Append(out_);
    out_.clear();
  }

 private:
  // The exported kind of a database node's records; the last one asked is kept,
  // as a walk asks for the same database a million times in a row.
  const KindSpec* KindOfParent(NodeId parent) {
    if (parent != lastParent_) {
      lastParent_ = parent;
      lastKind_ = ExportedKindByText(tree_.Text(parent));
    }
    return lastKind_;
  }

  void PrintRecord(const KindSpec& kind, const RecordSpan& span) {
    if (ws_.exportDepth > 0) out_.append(kBlanksPerDepth * static_cast<std::size_t>(ws_.exportDepth), ' ');
    formatter_.Append(out_, kind, ws_.Body(span), span, asText_);
    out_ += "\r\n";
    if (out_.size() >= kFlushAt) Flush();
    if (++printed_ % kProgressEvery == 0) Report(progress_, printed_, tree_.size());
  }

  Workspace& ws_;
  const DatabaseTree& tree_;
  NodeId lastParent_ = kNoNode;
  const KindSpec* lastKind_ = nullptr;
  bool asText_;
  Progress* progress_;
  FormatContext context_;
  RecordFormatter formatter_;  // after context_, which it reads
  BufferedFileWriter& file_;
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

  // Opened (and truncated) before the walk. A file that cannot be written still
  // gets the walk, which moves the export depth, and then the write's failure,
  // as when the whole text was written at the end.
  BufferedFileWriter file(path, BufferedFileWriter::Mode::Truncating, kFlushAt);
  ExportWalk walk(ws, asText, progress, file);
  std::optional<Failure> fault;
  try {
    if (scope == kScopeRecord) {
      if (const KindSpec* kind = KindBySelectedCaption(panel.captions[kScopeRecord])) {
        walk.TitledBanner(kind->form->exported.recordTitle);
        walk.ExportRecord(selected);
      }
    } else if (scope == kScopeKind) {
      if (const KindSpec* kind = KindByAllCaption(panel.captions[kScopeKind])) {
        const ExportSpec& e = kind->form->exported;
        walk.TitledBanner(asText ? e.kindTitleText : e.kindTitleCsv);
        if (!asText) walk.Print(CsvHeader(*kind));
        walk.ExportKind(selected == kNoNode ? kNoNode : tree.Parent(selected));
      }
    } else {
      walk.ExportTree(tree.Root());
    }
  } catch (const WorkCancelled&) {
    throw;  // the writer removes the file it created
  } catch (const CommandError& e) {
    // What was printed before the fault stays in the file.
    fault = Fail(e.what());
  }

  walk.Flush();
  const Status written = file.Finish();
  if (!written) return written.failure();
  if (fault) return *fault;
  Report(progress, tree.size(), tree.size());
  return std::optional<ExportDone>{ExportDone{path, Message{"Export to: " + path + " is complete.", "", MessageIcon::None}}};
}

}  // namespace orchidlamp
