#pragma once

// The record text formatters: one record as a report block or as one CSV row.
//
// Report block: CR LF, 44 hyphens, CR LF, then per member a tab, its label and its
// value, members joined by CR LF, nothing after the last. CSV row: every value in
// double quotes, not escaped (a quote, delimiter or line break inside a value is
// written as it stands), joined by the delimiter, no line break at the end.
//
// A record whose identifying member is empty formats as the text "1" (kSkipped)
// in both forms; exports write that marker like any other result.

#include <optional>
#include <string>
#include <string_view>

#include "core/bytes.h"
#include "core/database_tree.h"
#include "core/kinds.h"
#include "core/workspace.h"
#include "records/decoders.h"

namespace orchidlamp {

inline constexpr std::string_view kSkipped = "1";
inline constexpr std::string_view kSeparatorLine = "--------------------------------------------";

struct FormatContext {
  double timeZoneHours = 0;
  std::string delimiter = ",";
  // Where contacts' photos go while they are formatted; empty writes none.
  ContactPictureSink pictures;
};

// The context an export of this workspace uses: its time zone and delimiter, and
// contact photos written to its program folder.
FormatContext FormatContextOf(const Workspace& ws);

// `span` is the record's tag; a contact's photo is numbered by its first offset.
using RecordFormatter = std::string (*)(ByteView body, const RecordSpan& span, const FormatContext& context,
                                        bool asText);

std::string FormatAutoText(ByteView body, const RecordSpan& span, const FormatContext& context, bool asText);
std::string FormatBookmark(ByteView body, const RecordSpan& span, const FormatContext& context, bool asText);
std::string FormatSms(ByteView body, const RecordSpan& span, const FormatContext& context, bool asText);
// "Address Book" records (fields at the top level).
std::string FormatContact(ByteView body, const RecordSpan& span, const FormatContext& context, bool asText);
// "Address Book - All" records (fields nested in field 10).
std::string FormatContactNested(ByteView body, const RecordSpan& span, const FormatContext& context, bool asText);
std::string FormatTask(ByteView body, const RecordSpan& span, const FormatContext& context, bool asText);
std::string FormatMemo(ByteView body, const RecordSpan& span, const FormatContext& context, bool asText);
// "Calendar" records.
std::string FormatAppointment(ByteView body, const RecordSpan& span, const FormatContext& context, bool asText);
// "Calendar - All" records.
std::string FormatAppointmentNested(ByteView body, const RecordSpan& span, const FormatContext& context,
                                    bool asText);
std::string FormatCall(ByteView body, const RecordSpan& span, const FormatContext& context, bool asText);

// The record under a database node of this text, formatted by that database's
// formatter; nullopt when the text names no database that has one (service
// books, unknown databases, anything else). Throws CommandError when the span
// lies outside the loaded bytes.
std::optional<std::string> FormatRecordOf(const Workspace& ws, std::string_view databaseText, const RecordSpan& span,
                                          const FormatContext& context, bool asText);

}  // namespace orchidlamp
