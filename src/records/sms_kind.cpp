#include "records/decoders.h"
#include "records/field_text.h"
#include "records/record_date.h"

namespace orchidlamp {
namespace {

constexpr std::size_t kDirectionByte = 9;
constexpr std::size_t kFirstStamp = 22;
constexpr std::size_t kSecondStamp = 30;
constexpr std::size_t kStampWidth = 6;
// The fixed header fills the first field; the searchable fields start here.
constexpr std::size_t kFieldListStart = 73;

constexpr std::array<MemberSpec, 6> kMembers = {{
    {"Status", "Status"},
    {"Folder", ""},
    {"SentDate", "Sent Date"},
    {"ReceivedDate", "Received Date"},
    {"Number", "Number", true, FieldRoute::Clean, 2},
    {"Message", "Message", true},
}};

FieldList SmsFields(ByteView body) { return FieldList(ClippedSub(body, kFieldListStart, body.size())); }


void SetStamp(MemberValues& m, std::size_t member, ByteView body, std::size_t at, double timeZoneHours) {
  const ByteView stamp = ClippedSub(body, at, kStampWidth);
  m.Set(member, [&](std::string& text) {
    AppendRecordDate(text, LittleEndianStamp(stamp, kStampWidth), kMillisecondsPerDay, timeZoneHours);
  });
}

void Finish(ByteView body, const FieldList& fields, const DecodeContext& context, MemberValues& m) {
  const bool sent = SmsIsSent(body);
  m.Set(MemberIndex(kMembers, "Status"), sent ? "Sent" : "Received");
  m.Set(MemberIndex(kMembers, "Folder"), sent ? "Outbox" : "Inbox");
  SetStamp(m, MemberIndex(kMembers, "SentDate"), body, kFirstStamp, context.timeZoneHours);
  SetStamp(m, MemberIndex(kMembers, "ReceivedDate"), body, kSecondStamp, context.timeZoneHours);
  constexpr std::size_t kMessage = MemberIndex(kMembers, "Message");
  const ByteView message = fields.Find(4);
  // Only a first byte of 06 (the Arabic block) marks UTF-16; Latin UTF-16 goes
  // the 8-bit way and loses its zero bytes, which still reads right.
  m.Set(kMessage, [&](std::string& text) {
    if (!message.empty() && message[0] == 0x06)
      AppendUtf16(text, message);
    else
      AppendClean(text, message, kMembers[kMessage].keepLineBreaks);
  });
}

RecordLabel Label(ByteView body, const FieldList& fields) {
  return {RouteText(fields, kMembers[MemberIndex(kMembers, "Number")], false),
          SmsIsSent(body) ? ImageKey::sent : ImageKey::receivedsms};
}

constexpr auto kIdentity = MemberIndices(kMembers, {"Number"});

constexpr std::array<FrameBox, 6> kBoxes = {{
    {"Status", "dir_text", "Direction"},
    {"Folder", "folder_name", "Folder"},
    {"SentDate", "sent_date", "Sent on"},
    {"ReceivedDate", "recv_date", "Recv. On"},
    {"Number", "tel_number", "Number"},
    {"Message", "msg_text", "Message", true},
}};
constexpr FrameLayout kFrame{"SMSmessages", "SMS Messages", kBoxes};
static_assert(FrameShowsEachMemberOnce(kMembers, kFrame));

}  // namespace

// A body too short for the direction byte reads as 0, which is "sent".
bool SmsIsSent(ByteView body) { return body.size() <= kDirectionByte || body[kDirectionByte] == 0; }

const RecordForm kSmsForm = {
    kMembers,
    {"Export Selected SMS Message", "Export All SMS Messages", "SMS Message", "SMS Message", "SMS Message",
     "                           SMS Messages", {}, kIdentity},
    &kFrame};

const RecordDecoder kSmsDecoder = {SmsFields, Finish, Label};

}  // namespace orchidlamp
