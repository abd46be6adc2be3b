#include "core/database_tree.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <stdexcept>

#include "core/ipd_format.h"

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

void DatabaseTree::OffsetColumn::Clear() {
  narrow_.clear();
  wide_.clear();
}

void DatabaseTree::OffsetColumn::Reserve(std::size_t count) {
  if (wide_.empty())
    narrow_.reserve(count);
  else
    wide_.reserve(count);
}

void DatabaseTree::OffsetColumn::PushBack(std::int64_t value) {
  if (wide_.empty()) {
    if (value >= 0 && value <= std::int64_t{std::numeric_limits<std::uint32_t>::max()}) {
      narrow_.push_back(static_cast<std::uint32_t>(value));
      return;
    }
    wide_.assign(narrow_.begin(), narrow_.end());
    wide_.reserve(narrow_.capacity());
    narrow_ = {};
  }
  wide_.push_back(value);
}

void DatabaseTree::Clear() {
  parent_.clear();
  first_.Clear();
  last_.Clear();
  image_.clear();
  kind_.clear();
  flags_.clear();
  ownIds_.clear();
  own_.clear();
  topLevel_.clear();
  byKey_.clear();
}

void DatabaseTree::Reserve(std::size_t count) {
  parent_.reserve(count);
  first_.Reserve(count);
  last_.Reserve(count);
  image_.reserve(count);
  kind_.reserve(count);
  flags_.reserve(count);
}

void DatabaseTree::SetLabelSource(const RecordLabeller* labeller, ByteView bytes) {
  labeller_ = labeller;
  bytes_ = bytes;
}

std::vector<NodeId>& DatabaseTree::ChildList(NodeId parent) {
  if (parent == kNoNode) return topLevel_;
  OwnNode* own = Own(parent);
  if (!own) throw std::logic_error("a record node cannot hold children");
  return own->children;
}

const std::vector<NodeId>& DatabaseTree::Children(NodeId id) const {
  static const std::vector<NodeId> kNone;
  if (id == kNoNode) return topLevel_;
  const OwnNode* own = Own(id);
  return own ? own->children : kNone;
}

NodeId DatabaseTree::Append(NodeId parent, std::uint8_t flags, ImageKey image, std::uint8_t kind, RecordSpan span) {
  std::vector<NodeId>& siblings = ChildList(parent);
  const auto id = static_cast<NodeId>(size());
  parent_.push_back(parent);
  first_.PushBack(span.first);
  last_.PushBack(span.last);
  image_.push_back(image);
  kind_.push_back(kind);
  flags_.push_back(flags);
  siblings.push_back(id);
  return id;
}

NodeId DatabaseTree::Add(NodeId parent, std::string key, std::string text, ImageKey image,
                         std::optional<RecordSpan> tag) {
  const NodeId id = Append(parent, static_cast<std::uint8_t>(kOwn | (tag ? kHasTag : 0)), image, kNoKind,
                           tag.value_or(RecordSpan{}));
  if (!key.empty()) byKey_.emplace(key, id);
  ownIds_.push_back(id);
  own_.push_back({std::move(key), std::move(text), {}});
  return id;
}

NodeId DatabaseTree::AddRecord(NodeId parent, Kind kind, RecordSpan span) {
  return Append(parent, kHasTag | kImageFromLabel, ImageKey::None, static_cast<std::uint8_t>(kind), span);
}

void DatabaseTree::ReserveChildren(NodeId parent, std::size_t count) {
  std::vector<NodeId>& children = ChildList(parent);
  children.reserve(children.size() + count);
}

const DatabaseTree::OwnNode* DatabaseTree::Own(NodeId id) const {
  if (!(flags_[Index(id)] & kOwn)) return nullptr;
  const auto at = std::lower_bound(ownIds_.begin(), ownIds_.end(), id);
  return &own_[static_cast<std::size_t>(at - ownIds_.begin())];
}

std::int32_t DatabaseTree::Row(NodeId id) const {
  const std::vector<NodeId>& siblings = Children(Parent(id));
  return static_cast<std::int32_t>(std::lower_bound(siblings.begin(), siblings.end(), id) - siblings.begin());
}

const std::string& DatabaseTree::Key(NodeId id) const {
  static const std::string kNone;
  const OwnNode* own = Own(id);
  return own ? own->key : kNone;
}

RecordLabel DatabaseTree::LabelOf(NodeId id) const {
  if (!labeller_) return {};
  return labeller_->Label(static_cast<Kind>(kind_[Index(id)]),
                          BodyOf(bytes_, {first_[Index(id)], last_[Index(id)]}));
}

RecordLabel DatabaseTree::Label(NodeId id) const {
  const OwnNode* own = Own(id);
  RecordLabel label = own ? RecordLabel{own->text, ImageKey::None} : LabelOf(id);
  if (!(flags_[Index(id)] & kImageFromLabel)) label.image = image_[Index(id)];
  return label;
}

std::string DatabaseTree::Text(NodeId id) const {
  const OwnNode* own = Own(id);
  return own ? own->text : LabelOf(id).text;
}

ImageKey DatabaseTree::Image(NodeId id) const {
  return flags_[Index(id)] & kImageFromLabel ? LabelOf(id).image : image_[Index(id)];
}

void DatabaseTree::SetImage(NodeId id, ImageKey image) {
  image_[Index(id)] = image;
  flags_[Index(id)] &= static_cast<std::uint8_t>(~kImageFromLabel);
}

std::optional<RecordSpan> DatabaseTree::Tag(NodeId id) const {
  if (!(flags_[Index(id)] & kHasTag)) return std::nullopt;
  return RecordSpan{first_[Index(id)], last_[Index(id)]};
}

std::string DatabaseTree::TagText(NodeId id) const {
  const auto tag = Tag(id);
  return tag ? tag->Text() : std::string();
}

std::optional<Kind> DatabaseTree::RecordKind(NodeId id) const {
  const std::uint8_t kind = kind_[Index(id)];
  if (kind == kNoKind) return std::nullopt;
  return static_cast<Kind>(kind);
}

NodeId DatabaseTree::FindByKey(std::string_view key) const {
  auto it = byKey_.find(std::string(key));
  return it == byKey_.end() ? kNoNode : it->second;
}

NodeId DatabaseTree::FindByTag(std::string_view tagText) const {
  const auto span = RecordSpan::Parse(tagText);
  if (!span) return kNoNode;
  for (std::size_t i = 0; i < size(); ++i)
    if ((flags_[i] & kHasTag) && first_[i] == span->first && last_[i] == span->last) return static_cast<NodeId>(i);
  return kNoNode;
}

NodeId DatabaseTree::FindByKeyOrTag(std::string_view name) const {
  const NodeId byKey = FindByKey(name);
  return byKey != kNoNode ? byKey : FindByTag(name);
}

}  // namespace orchidlamp
