#include "core/hex_text.h"
#include "records/decoders.h"
#include "records/field_walk.h"
#include "records/record_date.h"
#include "records/text_routes.h"

namespace orchidlamp {
namespace {

constexpr std::size_t kDirectionByte = 9;
constexpr std::size_t kFirstStamp = 22;
constexpr std::size_t kSecondStamp = 30;
constexpr std::size_t kStampWidth = 6;
// The fixed header fills the first field; the searchable fields start here.
constexpr std::size_t kFieldListStart = 73;

FieldList SmsFields(ByteView body) { return FieldList(ClippedSub(body, kFieldListStart, body.size())); }

std::string StampText(ByteView body, std::size_t at, double timeZoneHours) {
  const ByteView stamp = ClippedSub(body, at, kStampWidth);
  return RecordDateText(LittleEndianStamp(stamp, kStampWidth), kMillisecondsPerDay, timeZoneHours);
}

}  // namespace

// A body too short for the direction byte reads as 0, which is "sent".
bool SmsIsSent(ByteView body) { return body.size() <= kDirectionByte || body[kDirectionByte] == 0; }

DecodedSms DecodeSms(ByteView body, double timeZoneHours) {
  DecodedSms sms;
  const bool sent = SmsIsSent(body);
  sms.Status = sent ? "Sent" : "Received";
  sms.Folder = sent ? "Outbox" : "Inbox";
  sms.SentDate = StampText(body, kFirstStamp, timeZoneHours);
  sms.ReceivedDate = StampText(body, kSecondStamp, timeZoneHours);
  const FieldList fields = SmsFields(body);
  sms.Number = CleanText(fields.Find(2), true);
  const ByteView message = fields.Find(4);
  // Only a first byte of 06 (the Arabic block) marks UTF-16; Latin UTF-16 goes
  // the 8-bit way and loses its zero bytes, which still reads right.
  if (!message.empty() && message[0] == 0x06)
    sms.Message = UnicodeBytesToText(message);
  else
    sms.Message = CleanText(message, true);
  return sms;
}

std::string SmsLabel(ByteView body) { return CleanText(SmsFields(body).Find(2), false); }

}  // namespace orchidlamp
