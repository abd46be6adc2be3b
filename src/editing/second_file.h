#pragma once

// The merge's second backup: its own byte array and its own selection tree,
// loaded by the walk the main loader uses. Only the nine mergeable databases get
// nodes; kinds are assigned by exact name with slots that start at -1 for every
// file (none of the main loader's carried-over slots).

#include <string>

#include "core/bytes.h"
#include "core/database_tree.h"
#include "core/message.h"
#include "core/record_labeller.h"

namespace orchidlamp {

struct SecondFile {
  std::string path;
  Bytes bytes;
  // Root keyed "Top" whose text is `path`; database nodes keyed i + "DBTop";
  // record nodes labelled as the main tree labels them, tagged with spans into
  // `bytes`. Images are as loaded; LoadSelectionTree or SetChildrenCheck turn
  // them into ticks.
  DatabaseTree tree;
};

// Failures carry the loader's messages (the DB titles error, the file records
// error) or the reason the file could not be read.
Result<SecondFile> LoadSecondFile(const std::string& path, const RecordLabeller& labeller);

// What the merge dialog does on browsing: the loaded file with every node of its
// tree unticked.
Result<SecondFile> BrowseSecondFile(const std::string& path, const RecordLabeller& labeller);

}  // namespace orchidlamp
