#include "records/decoded_records.h"

namespace orchidlamp {

#define ORCHIDLAMP_MEMBER(m) Member{#m, m}

MemberList DecodedSms::Members() const {
  return {ORCHIDLAMP_MEMBER(Status), ORCHIDLAMP_MEMBER(Folder), ORCHIDLAMP_MEMBER(SentDate),
          ORCHIDLAMP_MEMBER(ReceivedDate), ORCHIDLAMP_MEMBER(Number), ORCHIDLAMP_MEMBER(Message)};
}

MemberList DecodedContact::Members() const {
  return {ORCHIDLAMP_MEMBER(Title),        ORCHIDLAMP_MEMBER(FirstName),    ORCHIDLAMP_MEMBER(LastName),
          ORCHIDLAMP_MEMBER(Company),      ORCHIDLAMP_MEMBER(Job),          ORCHIDLAMP_MEMBER(Email),
          ORCHIDLAMP_MEMBER(WorkPhone1),   ORCHIDLAMP_MEMBER(WorkPhone2),   ORCHIDLAMP_MEMBER(HomePhone1),
          ORCHIDLAMP_MEMBER(HomePhone2),   ORCHIDLAMP_MEMBER(Mobile),       ORCHIDLAMP_MEMBER(Pager),
          ORCHIDLAMP_MEMBER(Fax),          ORCHIDLAMP_MEMBER(Other),        ORCHIDLAMP_MEMBER(Pin),
          ORCHIDLAMP_MEMBER(WorkAddress1), ORCHIDLAMP_MEMBER(WorkAddress2), ORCHIDLAMP_MEMBER(WorkCity),
          ORCHIDLAMP_MEMBER(WorkState),    ORCHIDLAMP_MEMBER(WorkZip),      ORCHIDLAMP_MEMBER(WorkCountry),
          ORCHIDLAMP_MEMBER(HomeAddress1), ORCHIDLAMP_MEMBER(HomeAddress2), ORCHIDLAMP_MEMBER(HomeCity),
          ORCHIDLAMP_MEMBER(HomeState),    ORCHIDLAMP_MEMBER(HomeZip),      ORCHIDLAMP_MEMBER(HomeCountry),
          ORCHIDLAMP_MEMBER(Birthday),     ORCHIDLAMP_MEMBER(Anniversary),  ORCHIDLAMP_MEMBER(Category),
          ORCHIDLAMP_MEMBER(WebPage),      ORCHIDLAMP_MEMBER(Field99),      ORCHIDLAMP_MEMBER(Reserved),
          ORCHIDLAMP_MEMBER(Notes),        ORCHIDLAMP_MEMBER(PhotoFile)};
}

MemberList DecodedAppointment::Members() const {
  return {ORCHIDLAMP_MEMBER(Subject), ORCHIDLAMP_MEMBER(Location), ORCHIDLAMP_MEMBER(Start),
          ORCHIDLAMP_MEMBER(End),     ORCHIDLAMP_MEMBER(Duration), ORCHIDLAMP_MEMBER(AppointmentNotes)};
}

MemberList DecodedTask::Members() const {
  return {ORCHIDLAMP_MEMBER(TaskName), ORCHIDLAMP_MEMBER(TaskStatus), ORCHIDLAMP_MEMBER(Priority),
          ORCHIDLAMP_MEMBER(TaskNotes)};
}

MemberList DecodedMemo::Members() const { return {ORCHIDLAMP_MEMBER(MemoTitle), ORCHIDLAMP_MEMBER(MemoText)}; }

MemberList DecodedCall::Members() const {
  return {ORCHIDLAMP_MEMBER(CallName),     ORCHIDLAMP_MEMBER(CallNumber),    ORCHIDLAMP_MEMBER(CallDate),
          ORCHIDLAMP_MEMBER(CallDuration), ORCHIDLAMP_MEMBER(CallDirection), ORCHIDLAMP_MEMBER(CallStatus)};
}

MemberList DecodedAutoText::Members() const { return {ORCHIDLAMP_MEMBER(Replace), ORCHIDLAMP_MEMBER(With)}; }

MemberList DecodedBookmark::Members() const {
  return {ORCHIDLAMP_MEMBER(BookmarkName), ORCHIDLAMP_MEMBER(BookmarkUrl)};
}

#undef ORCHIDLAMP_MEMBER

}  // namespace orchidlamp
