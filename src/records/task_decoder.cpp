#include <array>

#include "records/decoders.h"
#include "records/field_walk.h"
#include "records/text_routes.h"

namespace orchidlamp {
namespace {

constexpr std::array<std::string_view, 5> kStatusWords = {"Not Started", "In Progress", "Completed", "Waiting",
                                                          "Deferred"};
// 0 is the most urgent.
constexpr std::array<std::string_view, 3> kPriorityWords = {"High", "Normal", "Low"};

// The first data byte mapped through a word list; an absent field reads as 0.
template <std::size_t N>
std::string WordOf(const FieldList& fields, int code, const std::array<std::string_view, N>& words) {
  const ByteView data = fields.Find(code);
  const std::size_t value = data.empty() ? 0 : data[0];
  return value < N ? std::string(words[value]) : std::string();
}

}  // namespace

DecodedTask DecodeTask(ByteView body) {
  DecodedTask t;
  const FieldList fields = RecordFields(body);
  t.TaskName = PairedText(fields, 130, 2, false);
  t.TaskStatus = WordOf(fields, 9, kStatusWords);
  t.Priority = WordOf(fields, 10, kPriorityWords);
  t.TaskNotes = PairedText(fields, 131, 3, true);
  return t;
}

std::string TaskLabel(ByteView body) { return PairedText(RecordFields(body), 130, 2, false); }

}  // namespace orchidlamp
