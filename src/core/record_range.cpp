#include "core/record_range.h"

#include <string>

#include "core/result.h"

namespace orchidlamp {

ByteView CheckedRange(ByteView bytes, std::int64_t from, std::int64_t through) {
  const auto size = static_cast<std::int64_t>(bytes.size());
  if (from < 0 || through >= size || from > through + 1)
    throw CommandError("Record position " + std::to_string(from) + ":" + std::to_string(through) +
                       " lies outside the loaded file");
  return bytes.subspan(static_cast<std::size_t>(from), static_cast<std::size_t>(through - from + 1));
}

RecordSpan TagOf(const DatabaseTree& tree, NodeId node) {
  const auto tag = tree.Tag(node);
  if (!tag) throw CommandError("The node \"" + tree.Text(node) + "\" holds no record position");
  return *tag;
}

}  // namespace orchidlamp
