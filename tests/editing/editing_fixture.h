#pragma once

// What the editing tests share: a workspace loaded from built bytes, and the
// loader's view of a written file, so every file the writers produce is read
// back as the program would read it.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/workspace.h"
#include "records/record_kinds.h"
#include "support/ipd_builder.h"
#include "support/temp_folder.h"

namespace orchidlamp::testing {

// A task and a memo: their labels are their titles.
inline Record TaskRecord(std::uint16_t db, std::string_view title, std::uint16_t handle = 1,
                         std::uint32_t uid = 0x11223344) {
  return FieldRecord(db, {{2, Text(title)}, {9, Hex("AABB")}}, handle, uid);
}
inline Record MemoRecord(std::uint16_t db, std::string_view title, std::uint16_t handle = 1) {
  return FieldRecord(db, {{1, Text(title)}}, handle, 0x55667788);
}
inline Record AutoTextRecord(std::uint16_t db, std::string_view replace, std::string_view with) {
  return FieldRecord(db, {{1, TextZ(replace)}, {2, TextZ(with)}}, 7);
}

// "DB|record|record" per database node of a loaded tree, in tree order: the
// shape a reader of the written file sees.
inline std::vector<std::string> TreeShape(const DatabaseTree& tree) {
  std::vector<std::string> out;
  tree.ForEachChild(tree.Root(), [&](NodeId db) {
    std::string line = tree[db].text;
    tree.ForEachChild(db, [&](NodeId r) { line += "|" + tree[r].text; });
    out.push_back(line);
  });
  return out;
}

class EditingTest : public ::testing::Test {
 protected:
  // Loads `bytes` as the open backup.
  void Open(const Bytes& bytes, const std::string& name = "open.ipd") {
    Status loaded = ws.Load(folder.Write(name, bytes), StoredSettings{});
    ASSERT_TRUE(loaded) << loaded.failure().message.text;
  }
  // Loads a written file in a workspace of its own, as the program would open it.
  std::vector<std::string> ReadBack(const std::string& path) {
    Workspace reader(labeller);
    Status loaded = reader.Load(path, StoredSettings{});
    EXPECT_TRUE(loaded) << (loaded ? "" : loaded.failure().message.text);
    return TreeShape(reader.tree());
  }
  NodeId Db(const DatabaseTree& tree, int index) const {
    return tree.FindByKey(std::to_string(index) + "DBTop");
  }

  KindLabeller labeller;
  Workspace ws{labeller, [] { return std::time_t{1700000000}; }};
  TempFolder folder;
};

}  // namespace orchidlamp::testing
