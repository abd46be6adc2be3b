#pragma once

// The service-book editor (EditSB): opened on the main tree's selected
// service-book record, it holds that record's bytes and the panel's 22 values,
// and saves the rebuilt record as a new one-database IPD beside the open backup.

#include <optional>
#include <string>
#include <vector>

#include "core/result.h"
#include "core/workspace.h"
#include "editing/service_book_record.h"

namespace orchidlamp {

inline constexpr std::string_view kNoServiceBookSelected =
    "No Service Book record is selected!\r\nPlease select one for edit";
inline constexpr std::string_view kSelectRecordFirstTitle = "Please select record first:";

struct EditorSave {
  std::string path;
  // In the order they are shown: the blank-value message when BuildRecord
  // refused, then "File saved as " + path.
  std::vector<Message> messages;
};

class EditSB {
 public:
  // mEdit. Without a selection: a Failure carrying the "select a record first"
  // message (exclamation icon). A selected node that is not a record of
  // "Service Book": nullopt, and nothing is shown. A tag outside the loaded
  // bytes: a Failure.
  static Result<std::optional<EditSB>> Open(const Workspace& ws);

  // The record the editor was opened for, as hex (database id through last byte).
  const std::string& code() const { return code_; }
  const std::string& heading() const { return heading_; }
  NodeId node() const { return node_; }

  BuiltRecord BuildRecord() const { return orchidlamp::BuildRecord(code_, hrtnet); }

  // Save: the prefix and the rebuilt record, to OutputFolder + "OL_Export_" +
  // ddhhnnss + ".ipd", written from offset 0 without truncating. A refused
  // build still writes the file (with the prefix only). A value that is no
  // number fails the command before anything is written.
  Result<EditorSave> Save(const Workspace& ws) const;
  // SaveAll: the prefix, then every record of the database of the main tree's
  // CURRENT selection in tree order: the selected one rebuilt, the others byte
  // for byte as they stand in the loaded file (keeping their database ids).
  Result<EditorSave> SaveAll(const Workspace& ws) const;

  // The editor's boxes, hrtnet(0) ... hrtnet(21); the front end edits them.
  EditorValues hrtnet{};

 private:
  NodeId node_ = kNoNode;
  std::string code_;
  std::string heading_;
};

// Where the editor's saves go: ws.OutputFolder() + "OL_Export_" + ddhhnnss + ".ipd".
std::string EditorOutputPath(const Workspace& ws);

}  // namespace orchidlamp
