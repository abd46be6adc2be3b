#pragma once

// What each decoder returns: the record's members as text, in the order the
// detail panels and the export formatters rely on.

#include <string>
#include <string_view>
#include <vector>

namespace orchidlamp {

struct Member {
  std::string_view name;
  std::string value;
};
using MemberList = std::vector<Member>;

struct DecodedSms {
  std::string Status, Folder, SentDate, ReceivedDate, Number, Message;
  MemberList Members() const;
};

struct DecodedContact {
  std::string Title, FirstName, LastName, Company, Job, Email, WorkPhone1, WorkPhone2, HomePhone1, HomePhone2,
      Mobile, Pager, Fax, Other, Pin, WorkAddress1, WorkAddress2, WorkCity, WorkState, WorkZip, WorkCountry,
      HomeAddress1, HomeAddress2, HomeCity, HomeState, HomeZip, HomeCountry, Birthday, Anniversary, Category,
      WebPage, Field99, Reserved, Notes, PhotoFile;
  MemberList Members() const;
};

struct DecodedAppointment {
  std::string Subject, Location, Start, End, Duration, AppointmentNotes;
  MemberList Members() const;
};

struct DecodedTask {
  std::string TaskName, TaskStatus, Priority, TaskNotes;
  MemberList Members() const;
};

struct DecodedMemo {
  std::string MemoTitle, MemoText;
  MemberList Members() const;
};

struct DecodedCall {
  std::string CallName, CallNumber, CallDate, CallDuration, CallDirection, CallStatus;
  MemberList Members() const;
};

struct DecodedAutoText {
  std::string Replace, With;
  MemberList Members() const;
};

struct DecodedBookmark {
  std::string BookmarkName, BookmarkUrl;
  MemberList Members() const;
};

}  // namespace orchidlamp
