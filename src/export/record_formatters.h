#pragma once

// The record text formatter: one record as a report block or as one CSV row,
// walking the members its kind's export names (records/record_kinds.h).
//
// Report block: CR LF, 44 hyphens, CR LF, then per member a tab, its caption,
// ": " and its value, members joined by CR LF, nothing after the last. CSV row:
// every value in double quotes, not escaped (a quote, delimiter or line break
// inside a value is written as it stands), joined by the delimiter, no line
// break at the end.
//
// A record whose identifying members are all empty formats as the text "1"
// (kSkipped) in both forms; exports write that marker like any other result.

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/bytes.h"
#include "core/database_tree.h"
#include "core/kinds.h"
#include "core/workspace.h"
#include "records/record_kinds.h"

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

// The kind of a database node text when the export writes that kind's records;
// null otherwise (service books, unknown databases). The two contact kinds, and
// the two calendars, share their export texts.
const KindSpec* ExportedKindByText(std::string_view databaseText);

// `span` is the record's tag; a contact's photo is numbered by its first offset.
// `kind` must have members.
std::string FormatRecord(const KindSpec& kind, ByteView body, const RecordSpan& span, const FormatContext& context,
                         bool asText);

// FormatRecord for one record after another: each is appended to the caller's
// text, and the decoded values live in a buffer the formatter keeps, so an
// export allocates nothing per record.
class RecordFormatter {
 public:
  explicit RecordFormatter(const FormatContext& context) : context_(context) {}
  void Append(std::string& out, const KindSpec& kind, ByteView body, const RecordSpan& span, bool asText);

 private:
  // A kind's block or row is its values with fixed texts between them: before
  // the first, between each two, after the last. Made on first use.
  struct Layout {
    std::vector<std::uint8_t> members;  // exported, in the file's order
    std::vector<std::string> joins;     // one more than members
    std::size_t joinsSize;  // value-initialised by emplace()
  };
  const Layout& LayoutOf(const KindSpec& kind, bool asText);

  const FormatContext& context_;
  MemberValues values_;
  std::array<std::array<std::optional<Layout>, kKindCount>, 2> layouts_;
};

// The CSV header row of a kind: its exported captions joined by commas, whatever
// the delimiter (this mismatch with the data rows is wanted).
std::string CsvHeader(const KindSpec& kind);

}  // namespace orchidlamp
