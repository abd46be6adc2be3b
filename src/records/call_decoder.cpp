#include <array>

#include "records/decoders.h"
#include "records/field_walk.h"
#include "records/record_date.h"
#include "records/text_routes.h"

namespace orchidlamp {
namespace {

constexpr int kDirection = 2, kDuration = 3, kDate = 4, kStatus = 6, kNumber = 12, kName = 31, kWideName = 159;
constexpr std::size_t kDateWidth = 8;

constexpr std::array<std::string_view, 3> kDirectionWords = {"Received Call", "Placed Call", "Missed Call"};

std::string DurationText(std::int32_t seconds) {
  // Both parts truncate toward zero, so a negative count gives "-1:-5".
  return std::to_string(seconds / 60) + ":" + std::to_string(seconds % 60);
}

std::string StatusText(std::int32_t status) {
  if (status == 0) return {};
  return status == 1 ? "Busy" : "Error: Call Failed";
}

}  // namespace

DecodedCall DecodeCall(ByteView body, double timeZoneHours) {
  DecodedCall c;
  const FieldList fields = RecordFields(body);
  const std::int32_t direction = LittleEndianNumber(fields.Find(kDirection));
  if (direction >= 0 && direction < 3) c.CallDirection = std::string(kDirectionWords[static_cast<std::size_t>(direction)]);
  c.CallDate = RecordDateText(LittleEndianStamp(fields.Find(kDate), kDateWidth), kMillisecondsPerDay, timeZoneHours);
  // The two 8-bit routes of the name are not cleaned, unlike the number; kept so.
  const ByteView wide = fields.Find(kWideName);
  if (!wide.empty())
    c.CallName = Utf16AfterLeadText(wide, false);
  else if (const ByteView name = fields.Find(kName); !name.empty())
    c.CallName = PlainText(name);
  else
    c.CallName = PlainText(fields.Find(kNumber));
  c.CallNumber = CleanText(fields.Find(kNumber), false);
  c.CallDuration = DurationText(LittleEndianNumber(fields.Find(kDuration)));
  c.CallStatus = StatusText(LittleEndianNumber(fields.Find(kStatus)));
  return c;
}

std::string CallLabel(ByteView body) {
  const FieldList fields = RecordFields(body);
  if (fields.Has(kWideName)) {
    std::string name = Utf16AfterLeadText(fields.Find(kWideName), false);
    if (!name.empty()) return name;
  }
  for (int code : {kName, kNumber}) {
    std::string text = CleanText(fields.Find(code), false);
    if (!text.empty()) return text;
  }
  return "Unknown Number";
}

std::string CallDirectionWord(ByteView body) {
  const std::int32_t direction = LittleEndianNumber(RecordFields(body).Find(kDirection));
  return direction == 0 ? "received" : direction == 1 ? "placed" : "missed";
}

ImageKey CallDirectionImage(ByteView body) {
  const std::string word = CallDirectionWord(body);
  return word == "received" ? ImageKey::received : word == "placed" ? ImageKey::placed : ImageKey::missed;
}

}  // namespace orchidlamp
