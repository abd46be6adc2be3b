#include "export/record_formatters.h"

#include <initializer_list>

#include "export/export_kinds.h"
#include "records/contact_picture.h"

namespace orchidlamp {
namespace {

struct Labelled {
  std::string_view label;
  std::string_view value;
};

std::string Layout(std::initializer_list<Labelled> members, const FormatContext& context, bool asText) {
  std::string out;
  if (asText) {
    out += "\r\n";
    out += kSeparatorLine;
    out += "\r\n";
    bool first = true;
    for (const Labelled& m : members) {
      if (!first) out += "\r\n";
      first = false;
      out += '\t';
      out += m.label;
      out += m.value;
    }
  } else {
    bool first = true;
    for (const Labelled& m : members) {
      if (!first) out += context.delimiter;
      first = false;
      out += '"';
      out += m.value;
      out += '"';
    }
  }
  return out;
}

std::string ContactIn(ByteView body, const RecordSpan& span, const FormatContext& context, bool asText, bool nested) {
  const DecodedContact c = DecodeContact(body, span.first, nested, context.pictures);
  if (c.FirstName.empty() && c.LastName.empty()) return std::string(kSkipped);
  // "PIN: " comes before "Other: " here although the decoded contact keeps Other first.
  return Layout({{"Title: ", c.Title},
                 {"First Name: ", c.FirstName},
                 {"Last Name: ", c.LastName},
                 {"Company: ", c.Company},
                 {"Job: ", c.Job},
                 {"Email: ", c.Email},
                 {"Work Phone 1: ", c.WorkPhone1},
                 {"Work Phone 2: ", c.WorkPhone2},
                 {"Home Phone 1: ", c.HomePhone1},
                 {"Home Phone 2: ", c.HomePhone2},
                 {"Mobile: ", c.Mobile},
                 {"Pager: ", c.Pager},
                 {"Fax: ", c.Fax},
                 {"PIN: ", c.Pin},
                 {"Other: ", c.Other},
                 {"Home Address 1: ", c.HomeAddress1},
                 {"Home Address 2: ", c.HomeAddress2},
                 {"Home City: ", c.HomeCity},
                 {"Home State: ", c.HomeState},
                 {"Home ZIP: ", c.HomeZip},
                 {"Home Country: ", c.HomeCountry},
                 {"Work Address 1: ", c.WorkAddress1},
                 {"Work Address 2: ", c.WorkAddress2},
                 {"Work City: ", c.WorkCity},
                 {"Work State: ", c.WorkState},
                 {"Work ZIP: ", c.WorkZip},
                 {"Work Country: ", c.WorkCountry},
                 {"Birthday: ", c.Birthday},
                 {"Anniversary: ", c.Anniversary},
                 {"Category: ", c.Category},
                 {"Web Page: ", c.WebPage},
                 {"Notes: ", c.Notes}},
                context, asText);
}

std::string AppointmentIn(ByteView body, const FormatContext& context, bool asText, bool nested) {
  const DecodedAppointment a = DecodeAppointment(body, nested, context.timeZoneHours);
  if (a.Subject.empty()) return std::string(kSkipped);
  return Layout({{"Subject: ", a.Subject},
                 {"Location: ", a.Location},
                 {"Start: ", a.Start},
                 {"End: ", a.End},
                 {"Duration: ", a.Duration},
                 {"Notes: ", a.AppointmentNotes}},
                context, asText);
}

}  // namespace

std::string FormatAutoText(ByteView body, const RecordSpan&, const FormatContext& context, bool asText) {
  const DecodedAutoText a = DecodeAutoText(body);
  if (a.Replace.empty()) return std::string(kSkipped);
  return Layout({{"Replace: ", a.Replace}, {"With: ", a.With}}, context, asText);
}

std::string FormatBookmark(ByteView body, const RecordSpan&, const FormatContext& context, bool asText) {
  const DecodedBookmark b = DecodeBookmark(body);
  if (b.BookmarkUrl.empty()) return std::string(kSkipped);
  return Layout({{"Name: ", b.BookmarkName}, {"Url: ", b.BookmarkUrl}}, context, asText);
}

std::string FormatSms(ByteView body, const RecordSpan&, const FormatContext& context, bool asText) {
  const DecodedSms s = DecodeSms(body, context.timeZoneHours);
  if (s.Number.empty()) return std::string(kSkipped);
  return Layout({{"Status: ", s.Status},
                 {"Sent Date: ", s.SentDate},
                 {"Received Date: ", s.ReceivedDate},
                 {"Number: ", s.Number},
                 {"Message: ", s.Message}},
                context, asText);
}

std::string FormatContact(ByteView body, const RecordSpan& span, const FormatContext& context, bool asText) {
  return ContactIn(body, span, context, asText, false);
}

std::string FormatContactNested(ByteView body, const RecordSpan& span, const FormatContext& context, bool asText) {
  return ContactIn(body, span, context, asText, true);
}

std::string FormatTask(ByteView body, const RecordSpan&, const FormatContext& context, bool asText) {
  const DecodedTask t = DecodeTask(body);
  if (t.TaskName.empty()) return std::string(kSkipped);
  return Layout({{"Task: ", t.TaskName}, {"Status: ", t.TaskStatus}, {"Priority: ", t.Priority}, {"Notes: ", t.TaskNotes}},
                context, asText);
}

std::string FormatMemo(ByteView body, const RecordSpan&, const FormatContext& context, bool asText) {
  const DecodedMemo m = DecodeMemo(body);
  if (m.MemoTitle.empty()) return std::string(kSkipped);
  return Layout({{"Title: ", m.MemoTitle}, {"Memo: ", m.MemoText}}, context, asText);
}

std::string FormatAppointment(ByteView body, const RecordSpan&, const FormatContext& context, bool asText) {
  return AppointmentIn(body, context, asText, false);
}

std::string FormatAppointmentNested(ByteView body, const RecordSpan&, const FormatContext& context, bool asText) {
  return AppointmentIn(body, context, asText, true);
}

std::string FormatCall(ByteView body, const RecordSpan&, const FormatContext& context, bool asText) {
  const DecodedCall c = DecodeCall(body, context.timeZoneHours);
  if (c.CallName.empty() && c.CallNumber.empty()) return std::string(kSkipped);
  return Layout({{"Name: ", c.CallName},
                 {"Number: ", c.CallNumber},
                 {"Date: ", c.CallDate},
                 {"Duration: ", c.CallDuration},
                 {"Direction: ", c.CallDirection},
                 {"Status: ", c.CallStatus}},
                context, asText);
}

FormatContext FormatContextOf(const Workspace& ws) {
  return FormatContext{ws.settings().timeZoneHours, ws.settings().delimiter, ContactPictureWriter(ws.ProgramFolder())};
}

std::optional<std::string> FormatRecordOf(const Workspace& ws, std::string_view databaseText, const RecordSpan& span,
                                          const FormatContext& context, bool asText) {
  const ExportKindRow* row = ExportRowByText(databaseText);
  if (!row) return std::nullopt;
  return row->format(ws.Body(span), span, context, asText);
}

}  // namespace orchidlamp
