#include <string>

#include "core/ipd_format.h"
#include "fuzz_scratch.h"
#include "fuzz_targets.h"
#include "records/record_kinds.h"

namespace orchidlamp::fuzz {

int FuzzIpdLoader(const std::uint8_t* data, std::size_t size) {
  const KindLabeller labeller;
  Workspace ws(labeller);
  const Status loaded = LoadScratchBackup(ws, data, size);
  // A load ends whole or with one of the loader's two messages.
  if (!loaded && loaded.failure().message.text != kDbTitlesError && loaded.failure().message.text != kFileRecordsError)
    std::abort();

  // The tree must hold together whatever was loaded: every link inside it, every
  // tag inside the bytes the index read.
  const DatabaseTree& tree = ws.tree();
  std::size_t visited = 0;
  tree.ForEachDepthFirst([&](NodeId id, int depth) {
    ++visited;
    if (depth > 2) std::abort();
    if (const auto tag = tree.Tag(id)) {
      (void)ws.Body(*tag);  // throws, and so aborts, when a tag lies outside
      if (tree.FindByTag(tree.TagText(id)) == kNoNode) std::abort();
      // A record's label is made from the bytes whenever it is shown.
      if (tree.Label(id).text != tree.Text(id) || tree.Label(id).image != tree.Image(id)) std::abort();
    }
  });
  if (visited != tree.size()) std::abort();

  // The reader's own pieces straight on the bytes, as the second-file loader and
  // the writers use them.
  const ByteView bytes(data, size);
  if (auto table = ReadNameTable(bytes)) {
    for (const NameEntry& entry : table->entries) (void)entry.Bytes(bytes);
    (void)WalkRecords(bytes, table->recordsStart, [&](const RecordLocation& r) {
      if (r.Whole(bytes).size() != r.End() - r.offset) std::abort();
      (void)BodyOf(bytes, r.Span());
    });
  }
  return 0;
}

}  // namespace orchidlamp::fuzz
