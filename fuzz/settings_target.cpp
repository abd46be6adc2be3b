#include "core/settings.h"
#include "export/record_formatters.h"
#include "fuzz_scratch.h"
#include "fuzz_targets.h"
#include "records/record_kinds.h"

namespace orchidlamp::fuzz {

// The stored settings as the store may hold them after any edit by hand: the
// time-zone and delimiter texts come first, then a backup opened under them,
// every record of which is formatted with the derived values.
int FuzzSettings(const std::uint8_t* data, std::size_t size) {
  ControlReader control(data, size);
  StoredSettings stored;
  stored.timeZone = control.ShortText(64);
  stored.exportDelimiter = control.ShortText(16);
  (void)DeriveSettings(stored);

  const KindLabeller labeller;
  Workspace ws(labeller);
  PointFoldersAtScratch(ws);
  const std::string path = WriteScratchFile("settings.ipd", control.rest(), control.restSize());
  (void)ws.Load(path, stored);

  const FormatContext context = FormatContextOf(ws);
  const DatabaseTree& tree = ws.tree();
  for (NodeId id = 0; id < static_cast<NodeId>(tree.size()); ++id) {
    const auto tag = tree.Tag(id);
    if (!tag) continue;
    const auto kind = KindByName(tree.Text(tree.Parent(id)));
    if (!kind || !SpecOf(*kind).HasMembers()) continue;
    for (bool asText : {true, false}) (void)FormatRecord(SpecOf(*kind), ws.Body(*tag), *tag, context, asText);
  }
  return 0;
}

}  // namespace orchidlamp::fuzz
