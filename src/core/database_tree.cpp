#include "core/database_tree.h"

#include <charconv>

namespace orchidlamp {

std::string RecordSpan::Text() const { return std::to_string(first) + ":" + std::to_string(last); }

std::optional<RecordSpan> RecordSpan::Parse(std::string_view text) {
  const auto colon = text.find(':');
  if (colon == std::string_view::npos) return std::nullopt;
  RecordSpan span;
  auto parse = [](std::string_view part, std::int64_t& out) {
    auto [ptr, ec] = std::from_chars(part.data(), part.data() + part.size(), out);
    return ec == std::errc() && ptr == part.data() + part.size() && !part.empty();
  };
  if (!parse(text.substr(0, colon), span.first) || !parse(text.substr(colon + 1), span.last)) return std::nullopt;
  return span;
}

void DatabaseTree::Clear() {
  nodes_.clear();
  byKey_.clear();
  firstTop_ = lastTop_ = kNoNode;
}

NodeId DatabaseTree::Add(NodeId parent, std::string key, std::string text, ImageKey image,
                         std::optional<RecordSpan> tag) {
  const auto id = static_cast<NodeId>(nodes_.size());
  TreeNode& node = nodes_.emplace_back();
  node.text = std::move(text);
  node.image = image;
  node.tag = tag;
  node.parent = parent;
  if (!key.empty()) byKey_.emplace(key, id);
  node.key = std::move(key);
  NodeId& first = parent == kNoNode ? firstTop_ : nodes_[static_cast<std::size_t>(parent)].firstChild;
  NodeId& last = parent == kNoNode ? lastTop_ : nodes_[static_cast<std::size_t>(parent)].lastChild;
  if (last != kNoNode) {
    nodes_[static_cast<std::size_t>(last)].next = id;
    nodes_[static_cast<std::size_t>(id)].previous = last;
  } else {
    first = id;
  }
  last = id;
  if (parent != kNoNode) ++nodes_[static_cast<std::size_t>(parent)].childCount;
  return id;
}

NodeId DatabaseTree::FindByKey(std::string_view key) const {
  auto it = byKey_.find(std::string(key));
  return it == byKey_.end() ? kNoNode : it->second;
}

NodeId DatabaseTree::FindByTag(std::string_view tagText) const {
  const auto span = RecordSpan::Parse(tagText);
  if (!span) return kNoNode;
  for (std::size_t i = 0; i < nodes_.size(); ++i)
    if (nodes_[i].tag == span) return static_cast<NodeId>(i);
  return kNoNode;
}

NodeId DatabaseTree::FindByKeyOrTag(std::string_view name) const {
  const NodeId byKey = FindByKey(name);
  return byKey != kNoNode ? byKey : FindByTag(name);
}

NodeId DatabaseTree::FirstSibling(NodeId id) const {
  const NodeId parent = (*this)[id].parent;
  return parent == kNoNode ? firstTop_ : (*this)[parent].firstChild;
}

NodeId DatabaseTree::TopLevelFirst() const { return firstTop_; }

}  // namespace orchidlamp
