#pragma once

// The one table of what the export does per kind: the formatter, the export
// panel's captions, the titles of the three scopes and the CSV header row. Kinds
// are found by the text of a record's database node ("Address Book - All" and
// "Address Book" share their texts, and so do the two calendars).

#include <string_view>

#include "core/kinds.h"
#include "export/record_formatters.h"

namespace orchidlamp {

struct ExportKindRow {
  Kind kind;
  RecordFormatter format;
  std::string_view selectedCaption;  // option 0
  std::string_view allCaption;       // option 1
  // The title line of the selected-record scope; empty where the caption is not
  // among those the export recognises (bookmarks: an empty file).
  std::string_view recordTitle;
  std::string_view kindTitleText;  // all-of-kind scope, text export
  std::string_view kindTitleCsv;   // all-of-kind scope, CSV export
  // Commas whatever the delimiter; this mismatch with the data rows is wanted.
  std::string_view csvHeader;
  // The whole-tree title line, indentation included (it differs by kind).
  std::string_view treeTitle;
};

// The row of a database node text; null when that database has no formatter.
const ExportKindRow* ExportRowByText(std::string_view databaseText);

// The first row whose option-0 / option-1 caption is this text and that the
// export recognises for that scope; null otherwise (bookmarks included).
const ExportKindRow* ExportRowBySelectedCaption(std::string_view caption);
const ExportKindRow* ExportRowByAllCaption(std::string_view caption);

}  // namespace orchidlamp
