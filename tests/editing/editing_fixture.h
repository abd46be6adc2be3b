#pragma once

// What the editing tests share: a workspace loaded from built bytes, and the
// loader's view of a written file.

#include <gtest/gtest.h>

#include "core/workspace.h"
#include "records/record_kinds.h"
#include "support/ipd_builder.h"
#include "support/temp_folder.h"

namespace orchidlamp::testing {

// Labelled by their titles.
inline Record TaskRecord(std::uint16_t db, std::string_view title, std::uint16_t handle = 1,
                         std::uint32_t uid = 0x11223344) {
  return FieldRecord(db, {{2, Text(title)}, {9, Hex("AABB")}}, handle, uid);
}
inline Record MemoRecord(std::uint16_t db, std::string_view title, std::uint16_t handle = 1) {
  return FieldRecord(db, {{1, Text(title)}}, handle, 0x55667788);
}

class EditingTest : public ::testing::Test {
 protected:
  void Open(const Bytes& bytes) {
    Status loaded = ws.Load(folder.Write("open.ipd", bytes), StoredSettings{});
    ASSERT_TRUE(loaded) << loaded.failure().message.text;
  }
  // "DB|record|record" per database node of the file loaded as the program would open it.
  std::vector<std::string> ReadBack(const std::string& path) {
    Workspace reader(labeller);
    Status loaded = reader.Load(path, StoredSettings{});
    EXPECT_TRUE(loaded) << (loaded ? "" : loaded.failure().message.text);
    std::vector<std::string> out;
    const DatabaseTree& tree = reader.tree();
    tree.ForEachChild(tree.Root(), [&](NodeId db) {
      out.push_back(tree.Text(db));
      tree.ForEachChild(db, [&](NodeId r) { out.back() += "|" + tree.Text(r); });
    });
    return out;
  }

  KindLabeller labeller;
  Workspace ws{labeller, [] { return std::time_t{1700000000}; }};
  TempFolder folder;
};

}  // namespace orchidlamp::testing
