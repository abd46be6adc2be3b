#include "records/record_click.h"

#include "records/contact_picture.h"
#include "records/service_book_panel.h"

namespace orchidlamp {

ClickResult ClickNode(Workspace& ws, NodeId node) {
  const DatabaseTree& tree = ws.tree();
  if (node == kNoNode || static_cast<std::size_t>(node) >= tree.size()) return {};
  if (tree.ChildCount(node) >= 2) {
    ws.menus().servicebook = false;
    return {};
  }
  const NodeId parent = tree.Parent(node);
  const std::string name = parent == kNoNode ? std::string() : tree.Text(parent);
  if (name != InfoOf(Kind::ServiceBook).name) ws.menus().servicebook = false;
  const auto kind = KindByName(name);
  const auto tag = tree.Tag(node);
  if (!kind || !tag) return {};
  try {
    const ByteView body = ws.Body(*tag);
    if (*kind == Kind::ServiceBook) {
      ApplyServiceBookBoxes(DecodeServiceBookPanel(body), ws.hrtnet);
      ws.menus().servicebook = true;
      return {kind, {}};
    }
    const ContactPictureSink pictures = ContactPictureWriter(ws.ProgramFolder());
    const DecodeContext context{ws.settings().timeZoneHours, tag->first, &pictures};
    return {kind, DecodeRecord(SpecOf(*kind), body, context)};
  } catch (const CommandError&) {
    // A record the panel cannot be filled from shows nothing.
    return {};
  }
}

}  // namespace orchidlamp
