#pragma once

// The one description of every record kind: its tree image and label, its
// members in order (name, caption, line breaks, where each is read from), what
// the export writes of it and how the window lays out its detail frame. The
// loader, a click, `show`, the export and the window all read this table. A
// member is added in its kind file (records/*_kind.cpp) alone; a kind needs its
// Kind and database name (core/kinds.h), its row in record_kinds.cpp and a kind
// file.

#include <algorithm>
#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/bytes.h"
#include "core/kinds.h"
#include "core/record_labeller.h"

namespace orchidlamp {

// Writes a contact's JPEG photo; returns what the contact's PhotoFile shows.
using ContactPictureSink = std::function<std::string(ByteView jpeg, std::int64_t number)>;

struct DecodeContext {
  double timeZoneHours = 0;
  std::int64_t pictureNumber = 0;  // the span's first offset: contact pictures are "PIC" + it + ".jpg"
  const ContactPictureSink* pictures = nullptr;
};

// How a member that is one field of the record's list becomes text. The routes
// differ between kinds (which is cleaned, which may be UTF-16) and are kept so.
enum class FieldRoute : std::uint8_t {
  Computed,      // the kind's own code fills it
  Clean,         // the plain code, control characters cleaned
  Paired,        // the UTF-16 code when it holds data, else the plain code; both cleaned
  PairedRaw,     // as Paired, but the plain code's text is not cleaned
  Joined,        // the plain code, then the wide code's data after its lead byte read 8-bit; both cleaned
};

struct MemberSpec {
  std::string_view name;  // what `show` prints
  // The export's label and the window's default one; empty: the export leaves
  // the member out (and its box names a label of its own).
  std::string_view caption;
  bool keepLineBreaks = false;  // CR and LF survive the cleaning of control characters
  FieldRoute route = FieldRoute::Computed;
  int code = 0;      // the plain field code
  int wideCode = 0;  // the UTF-16 (or 128-form) field code
};

// A decoded record: its members' values, in the kind's member order.
struct Member {
  std::string_view name;
  std::string value;
};
using MemberList = std::vector<Member>;

// A record's member values side by side in one text, kept from record to record:
// once it has grown, decoding another record allocates nothing.
class MemberValues {
 public:
  static constexpr std::size_t kMostMembers = 40;

  // Every member empty.
  void Reset(std::size_t count) {
    text_.clear();
    count_ = count;
    std::fill_n(spans_.begin(), count, Span{});
  }
  std::size_t size() const { return count_; }
  std::string_view operator[](std::size_t i) const {
    return {text_.data() + spans_[i].start, spans_[i].length};
  }
  // Member i becomes what `append` appends to the text it is given.
  template <typename Append>
    requires std::invocable<Append, std::string&>
  void Set(std::size_t i, Append&& append) {
    const std::size_t start = text_.size();
    append(text_);
    spans_[i] = {static_cast<std::uint32_t>(start), static_cast<std::uint32_t>(text_.size() - start)};
  }
  void Set(std::size_t i, std::string_view value) {
    Set(i, [value](std::string& text) { text += value; });
  }

 private:
  struct Span {
    std::uint32_t start = 0, length = 0;
  };
  std::string text_;
  std::size_t count_ = 0;
  std::array<Span, kMostMembers> spans_{};
};

// The index of a member by name, for the kind files' own code and tables; a
// name that is no member fails to compile.
template <std::size_t N>
consteval std::uint8_t MemberIndex(const std::array<MemberSpec, N>& members, std::string_view name) {
  for (std::size_t i = 0; i < N; ++i)
    if (members[i].name == name) return static_cast<std::uint8_t>(i);
  throw "no such member";
}
template <std::size_t N, std::size_t M>
consteval std::array<std::uint8_t, M> MemberIndices(const std::array<MemberSpec, N>& members,
                                                    const std::string_view (&names)[M]) {
  std::array<std::uint8_t, M> indices{};
  for (std::size_t i = 0; i < M; ++i) indices[i] = MemberIndex(members, names[i]);
  return indices;
}

// What the export does with a kind: the panel's option captions, the title line
// of each scope and the members it writes.
struct ExportSpec {
  std::string_view selectedCaption;  // option 0
  std::string_view allCaption;       // option 1
  // The selected-record title; empty where the caption is not among those the
  // export recognises (bookmarks: an empty file).
  std::string_view recordTitle;
  std::string_view kindTitleText;  // all-of-kind scope, text export
  std::string_view kindTitleCsv;   // all-of-kind scope, CSV export
  std::string_view treeTitle;      // whole-tree title line, indentation included (it differs by kind)
  // The members written, in the file's order; empty: every captioned member in
  // member order. The CSV header row is their captions joined by commas.
  std::span<const std::uint8_t> order;
  // A record whose identifying members are all empty is written as the skip marker.
  std::span<const std::uint8_t> identity;
};

// The detail frame: which member goes in which box, with the box's widget name,
// label and form. The window builds the frame from this and nothing else.
struct FrameBox {
  std::string_view member = {};
  std::string_view objectName = {};            // empty: the member's name
  std::optional<std::string_view> label = {};  // nullopt: the member's caption
  bool multiLine = false;
  bool sharesRow = false;  // sits beside the previous box, in its row
};
struct FrameTab {
  std::string_view caption = {};
  std::span<const FrameBox> boxes = {};
  bool photo = false;  // the contact's picture sits under this tab's boxes
};
struct FrameLayout {
  std::string_view objectName = {};
  std::string_view caption = {};
  std::span<const FrameBox> boxes = {};  // one form, or
  std::span<const FrameTab> tabs = {};   // a tab widget of forms
  std::string_view tabsName = {};
  std::string_view photoMember = {};  // the member whose value is the picture's path
  bool serviceBook = false;           // the service-book boxes instead of members
};

// True when the frame has exactly one box for every member and every box names
// a member; each kind file asserts it of its frame at compile time.
template <std::size_t N>
consteval bool FrameShowsEachMemberOnce(const std::array<MemberSpec, N>& members, const FrameLayout& frame) {
  std::array<int, N> boxes{};
  for (const FrameBox& b : frame.boxes) ++boxes[MemberIndex(members, b.member)];
  for (const FrameTab& tab : frame.tabs)
    for (const FrameBox& b : tab.boxes) ++boxes[MemberIndex(members, b.member)];
  for (int count : boxes)
    if (count != 1) return false;
  return true;
}

// What kinds of one record shape share (both contact kinds, both calendars).
struct RecordForm {
  std::span<const MemberSpec> members;
  ExportSpec exported;
  const FrameLayout* frame;
};

// How a kind reads its records: records/decoders.h.
struct RecordDecoder;

struct KindSpec {
  Kind kind;
  ImageKey image;  // the record node image where the label does not choose one
  const RecordForm* form;
  const RecordDecoder* decoder;

  bool HasMembers() const { return !form->members.empty(); }
};

const KindSpec& SpecOf(Kind kind);

// The record's members as its kind reads them. The service book has none: its
// panel is the boxes of records/service_book_panel.h.
MemberList DecodeRecord(const KindSpec& kind, ByteView body, const DecodeContext& context);
// The same values into `values`, which may be reused from record to record.
void DecodeRecordInto(const KindSpec& kind, ByteView body, const DecodeContext& context, MemberValues& values);
RecordLabel LabelRecord(const KindSpec& kind, ByteView body);

// The labeller the loaders use.
class KindLabeller final : public RecordLabeller {
 public:
  RecordLabel Label(Kind kind, ByteView body) const override { return LabelRecord(SpecOf(kind), body); }
};

}  // namespace orchidlamp
