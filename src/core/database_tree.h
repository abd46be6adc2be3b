#pragma once

// The tree of the open backup: root, database nodes, record nodes. It is also the
// system's index of records: every command finds records by their nodes' tags.
// Nodes live in one vector in the order they were added (the collection order).

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "core/image_key.h"

namespace orchidlamp {

// A record's place in the loaded bytes: the offset of its handle and of its last
// byte. Its text form "first:last" is the record node's tag.
struct RecordSpan {
  std::int64_t first = 0;
  std::int64_t last = 0;

  std::string Text() const;
  // Accepts what a tag holds: two decimal integers joined by ":".
  static std::optional<RecordSpan> Parse(std::string_view text);
  bool operator==(const RecordSpan&) const = default;
};

using NodeId = std::int32_t;
inline constexpr NodeId kNoNode = -1;

struct TreeNode {
  std::string key;
  std::string text;
  std::optional<RecordSpan> tag;
  ImageKey image = ImageKey::None;
  NodeId parent = kNoNode;
  NodeId firstChild = kNoNode;
  NodeId lastChild = kNoNode;
  NodeId next = kNoNode;
  NodeId previous = kNoNode;
  std::int32_t childCount = 0;

  std::string TagText() const { return tag ? tag->Text() : std::string(); }
};

class DatabaseTree {
 public:
  void Clear();
  void Reserve(std::size_t count) { nodes_.reserve(count); }

  // Adds a node as the last child of parent (kNoNode for a top-level node).
  NodeId Add(NodeId parent, std::string key, std::string text, ImageKey image,
             std::optional<RecordSpan> tag = std::nullopt);

  std::size_t size() const { return nodes_.size(); }
  bool empty() const { return nodes_.empty(); }
  const TreeNode& operator[](NodeId id) const { return nodes_[static_cast<std::size_t>(id)]; }
  TreeNode& operator[](NodeId id) { return nodes_[static_cast<std::size_t>(id)]; }
  const std::vector<TreeNode>& nodes() const { return nodes_; }

  NodeId Root() const { return nodes_.empty() ? kNoNode : 0; }
  NodeId FindByKey(std::string_view key) const;
  NodeId FindByTag(std::string_view tagText) const;
  // A node key ("Top", "3DBTop") or a record tag.
  NodeId FindByKeyOrTag(std::string_view name) const;
  NodeId FirstSibling(NodeId id) const;

  // Children of a node, first to last.
  template <class F>
  void ForEachChild(NodeId id, F&& visit) const {
    for (NodeId c = (*this)[id].firstChild; c != kNoNode; c = (*this)[c].next) visit(c);
  }
  // Depth first from the top-level nodes: a node, then its subtree, then the next.
  template <class F>
  void ForEachDepthFirst(F&& visit) const {
    for (NodeId top = nodes_.empty() ? kNoNode : TopLevelFirst(); top != kNoNode; top = (*this)[top].next)
      VisitSubtree(top, 0, visit);
  }

 private:
  NodeId TopLevelFirst() const;
  template <class F>
  void VisitSubtree(NodeId id, int depth, F& visit) const {
    visit(id, depth);
    for (NodeId c = (*this)[id].firstChild; c != kNoNode; c = (*this)[c].next) VisitSubtree(c, depth + 1, visit);
  }

  std::vector<TreeNode> nodes_;
  std::unordered_map<std::string, NodeId> byKey_;
  NodeId firstTop_ = kNoNode;
  NodeId lastTop_ = kNoNode;
};

}  // namespace orchidlamp
