#pragma once

// The tree of the open backup: root, database nodes, record nodes. It is also the
// system's index of records: every command finds records by their nodes' tags.
// Node ids follow the order nodes were added (the collection order).
//
// A million-record backup must cost little more than its bytes, so the nodes are
// kept as columns, and a record node holds only its kind and span: its text and
// image are its label, made from the loaded bytes each time they are asked for.
// Only the root, the databases and nodes added with a text of their own keep
// strings and child lists.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "core/bytes.h"
#include "core/image_key.h"
#include "core/kinds.h"
#include "core/record_labeller.h"

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

class DatabaseTree {
 public:
  void Clear();
  void Reserve(std::size_t count);

  // Record labels are made by `labeller` from `bytes`, which must outlive the
  // tree's use of them (the workspace's loaded file, a merge's second file).
  void SetLabelSource(const RecordLabeller* labeller, ByteView bytes);
  // Labels record nodes as `other` does: for copies of a tree.
  void ShareLabelSource(const DatabaseTree& other) { SetLabelSource(other.labeller_, other.bytes_); }

  // Adds a node with its own key, text and image as the last child of parent
  // (kNoNode for a top-level node).
  NodeId Add(NodeId parent, std::string key, std::string text, ImageKey image,
             std::optional<RecordSpan> tag = std::nullopt);
  // Adds a record node of `kind`, labelled on demand. Its parent must be a node
  // added by Add.
  NodeId AddRecord(NodeId parent, Kind kind, RecordSpan span);
  // Room for `count` more children of `parent`, so a database's records are placed once.
  void ReserveChildren(NodeId parent, std::size_t count);

  std::size_t size() const { return parent_.size(); }
  bool empty() const { return parent_.empty(); }
  NodeId Root() const { return empty() ? kNoNode : 0; }

  NodeId Parent(NodeId id) const { return parent_[Index(id)]; }
  NodeId FirstChild(NodeId id) const { return ChildCount(id) > 0 ? Children(id)[0] : kNoNode; }
  std::int32_t ChildCount(NodeId id) const { return static_cast<std::int32_t>(Children(id).size()); }
  // The node's children (top-level nodes for kNoNode), first to last.
  const std::vector<NodeId>& Children(NodeId id) const;
  // The node's position among its parent's children.
  std::int32_t Row(NodeId id) const;

  // Empty for record nodes.
  const std::string& Key(NodeId id) const;
  std::string Text(NodeId id) const;
  ImageKey Image(NodeId id) const;
  void SetImage(NodeId id, ImageKey image);
  std::optional<RecordSpan> Tag(NodeId id) const;
  std::string TagText(NodeId id) const;
  // Text and image at once: a record node's label is made once for both.
  RecordLabel Label(NodeId id) const;
  // The kind of a record node added by AddRecord.
  std::optional<Kind> RecordKind(NodeId id) const;

  // The nodes added by Add, in collection order: the only ones that can hold children.
  const std::vector<NodeId>& OwnNodes() const { return ownIds_; }

  NodeId FindByKey(std::string_view key) const;
  NodeId FindByTag(std::string_view tagText) const;
  // A node key ("Top", "3DBTop") or a record tag.
  NodeId FindByKeyOrTag(std::string_view name) const;

  template <class F>
  void ForEachChild(NodeId id, F&& visit) const {
    for (NodeId c : Children(id)) visit(c);
  }
  // Depth first from the top-level nodes: a node, then its subtree, then the next.
  template <class F>
  void ForEachDepthFirst(F&& visit) const {
    for (NodeId top : topLevel_) VisitSubtree(top, 0, visit);
  }

 private:
  // What a node added by Add holds beyond the columns.
  struct OwnNode {
    std::string key;
    std::string text;
    std::vector<NodeId> children;
  };
  enum Flags : std::uint8_t { kHasTag = 1, kOwn = 2, kImageFromLabel = 4 };

  // Byte offsets: four bytes each while every one fits, eight once one does not.
  class OffsetColumn {
   public:
    void Clear();
    void Reserve(std::size_t count);
    void PushBack(std::int64_t value);
    std::int64_t operator[](std::size_t i) const { return wide_.empty() ? narrow_[i] : wide_[i]; }

   private:
    std::vector<std::uint32_t> narrow_;
    std::vector<std::int64_t> wide_;
  };
  static constexpr std::uint8_t kNoKind = 0xFF;

  static std::size_t Index(NodeId id) { return static_cast<std::size_t>(id); }
  NodeId Append(NodeId parent, std::uint8_t flags, ImageKey image, std::uint8_t kind, RecordSpan span);
  // The Add-ed node's own part; nullptr for a record node.
  const OwnNode* Own(NodeId id) const;
  OwnNode* Own(NodeId id) { return const_cast<OwnNode*>(static_cast<const DatabaseTree*>(this)->Own(id)); }
  std::vector<NodeId>& ChildList(NodeId parent);
  RecordLabel LabelOf(NodeId id) const;

  template <class F>
  void VisitSubtree(NodeId id, int depth, F& visit) const {
    visit(id, depth);
    for (NodeId c : Children(id)) VisitSubtree(c, depth + 1, visit);
  }

  // One entry per node. A child list is in ascending id order, so a node's row
  // is found there rather than kept.
  std::vector<NodeId> parent_;
  OffsetColumn first_;
  OffsetColumn last_;
  std::vector<ImageKey> image_;
  std::vector<std::uint8_t> kind_;
  std::vector<std::uint8_t> flags_;
  // Nodes added by Add, by ascending id.
  std::vector<NodeId> ownIds_;
  std::vector<OwnNode> own_;
  std::vector<NodeId> topLevel_;
  std::unordered_map<std::string, NodeId> byKey_;
  const RecordLabeller* labeller_ = nullptr;
  ByteView bytes_;
};

}  // namespace orchidlamp
