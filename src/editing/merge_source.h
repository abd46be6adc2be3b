#pragma once

// What the merge reads from. Either side is a selection tree over a byte array;
// the second side is a backup of its own, loaded here by the walk the main
// loader uses. Only the nine mergeable databases get nodes; kinds are assigned by
// exact name with slots that start at -1 for every file (none of the main
// loader's carried-over slots).

#include <string>

#include "core/bytes.h"
#include "core/database_tree.h"
#include "core/result.h"
#include "core/record_labeller.h"

namespace orchidlamp {

// One side of the merge: a selection tree and the byte array its tags point into.
struct MergeSource {
  const DatabaseTree& tree;
  ByteView bytes;
};

struct SecondFile {
  // Moves only: the tree's labels are read from `bytes` where they lie.
  SecondFile() = default;
  SecondFile(SecondFile&&) = default;
  SecondFile& operator=(SecondFile&&) = default;
  SecondFile(const SecondFile&) = delete;
  SecondFile& operator=(const SecondFile&) = delete;

  std::string path;
  Bytes bytes;
  // Root keyed "Top" whose text is `path`; database nodes keyed i + "DBTop";
  // record nodes labelled (on demand) as the main tree labels them, tagged with spans into
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
