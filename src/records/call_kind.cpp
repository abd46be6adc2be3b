#include <charconv>

#include "records/decoders.h"
#include "records/field_text.h"
#include "records/record_date.h"

namespace orchidlamp {
namespace {

constexpr int kDirection = 2, kDuration = 3, kDate = 4, kStatus = 6, kNumber = 12, kName = 31, kWideName = 159;
constexpr std::size_t kDateWidth = 8;

constexpr std::array<MemberSpec, 6> kMembers = {{
    {"CallName", "Name"},
    {"CallNumber", "Number", false, FieldRoute::Clean, kNumber},
    {"CallDate", "Date"},
    {"CallDuration", "Duration"},
    {"CallDirection", "Direction"},
    {"CallStatus", "Status"},
}};

constexpr std::array<std::string_view, 3> kDirectionWords = {"Received Call", "Placed Call", "Missed Call"};

void AppendDecimal(std::string& out, std::int32_t n) {
  char digits[16];
  const auto end = std::to_chars(digits, digits + sizeof digits, n).ptr;
  out.append(digits, end);
}

void AppendDuration(std::string& out, std::int32_t seconds) {
  // Both parts truncate toward zero, so a negative count gives "-1:-5".
  AppendDecimal(out, seconds / 60);
  out += ':';
  AppendDecimal(out, seconds % 60);
}

std::string_view StatusText(std::int32_t status) {
  if (status == 0) return {};
  return status == 1 ? "Busy" : "Error: Call Failed";
}

void Finish(ByteView, const FieldList& fields, const DecodeContext& context, MemberValues& m) {
  const std::int32_t direction = LittleEndianNumber(fields.Find(kDirection));
  if (direction >= 0 && direction < 3)
    m.Set(MemberIndex(kMembers, "CallDirection"), kDirectionWords[static_cast<std::size_t>(direction)]);
  m.Set(MemberIndex(kMembers, "CallDate"), [&](std::string& text) {
    AppendRecordDate(text, LittleEndianStamp(fields.Find(kDate), kDateWidth), kMillisecondsPerDay,
                     context.timeZoneHours);
  });
  // The two 8-bit routes of the name are not cleaned, unlike the number; kept so.
  m.Set(MemberIndex(kMembers, "CallName"), [&](std::string& text) {
    const ByteView wide = fields.Find(kWideName);
    if (!wide.empty())
      AppendUtf16AfterLead(text, wide, false);
    else if (const ByteView plain = fields.Find(kName); !plain.empty())
      AppendPlain(text, plain);
    else
      AppendPlain(text, fields.Find(kNumber));
  });
  m.Set(MemberIndex(kMembers, "CallDuration"),
        [&](std::string& text) { AppendDuration(text, LittleEndianNumber(fields.Find(kDuration))); });
  m.Set(MemberIndex(kMembers, "CallStatus"), StatusText(LittleEndianNumber(fields.Find(kStatus))));
}

// The node image follows the direction: received, placed, anything else missed.
ImageKey DirectionImage(const FieldList& fields) {
  const std::int32_t direction = LittleEndianNumber(fields.Find(kDirection));
  return direction == 0 ? ImageKey::received : direction == 1 ? ImageKey::placed : ImageKey::missed;
}

std::string LabelText(const FieldList& fields) {
  std::string text;
  if (fields.Has(kWideName)) {
    AppendUtf16AfterLead(text, fields.Find(kWideName), false);
    if (!text.empty()) return text;
  }
  for (int code : {kName, kNumber}) {
    AppendClean(text, fields.Find(code), false);
    if (!text.empty()) return text;
  }
  return "Unknown Number";
}

RecordLabel Label(ByteView, const FieldList& fields) { return {LabelText(fields), DirectionImage(fields)}; }

// A call is written when it has a name or a number.
constexpr auto kIdentity = MemberIndices(kMembers, {"CallName", "CallNumber"});

constexpr std::array<FrameBox, 6> kBoxes = {{
    {"CallName", "ct46"},
    {"CallNumber", "ct47"},
    {"CallDate", "ct48"},
    {"CallDuration", "ct49"},
    {"CallDirection", "ct50"},
    {"CallStatus", "ct51"},
}};
constexpr FrameLayout kFrame{"pcallslog", "Phone Calls Log", kBoxes};
static_assert(FrameShowsEachMemberOnce(kMembers, kFrame));

}  // namespace

const RecordForm kCallForm = {
    kMembers,
    {"Export Selected Phone Call", "Export All Phone Calls", "Phone Calls", "Phone Calls", "Phone Calls",
     "                          Phone Call Logs", {}, kIdentity},
    &kFrame};

const RecordDecoder kCallDecoder = {RecordFields, Finish, Label};

}  // namespace orchidlamp
