#include "ui/tree_search.h"

#include <gtest/gtest.h>

#include "gui_test_support.h"

namespace orchidlamp {
namespace {

// Collection order: root, databases, then records in the order they were added,
// whatever their database.
DatabaseTree SearchTree() {
  DatabaseTree t;
  const NodeId root = t.Add(kNoNode, "Top", "/backups/phone sms.ipd", ImageKey::sheet);
  const NodeId sms = t.Add(root, "0DBTop", "SMS Messages", ImageKey::None);
  const NodeId memos = t.Add(root, "1DBTop", "Memos", ImageKey::None);
  t.Add(sms, {}, "Mum", ImageKey::sent, RecordSpan{10, 20});
  t.Add(memos, {}, "summer plans", ImageKey::memos, RecordSpan{21, 30});
  t.Add(sms, {}, "Sam", ImageKey::receivedsms, RecordSpan{31, 40});
  t.Add(memos, {}, "Museum", ImageKey::memos, RecordSpan{41, 50});
  return t;
}

TEST(TreeSearch, ComparesUpperCasedAsShownAndCountsEveryNodeInCollectionOrder) {
  const DatabaseTree t = SearchTree();
  // The root's path and the database name match before any record.
  EXPECT_EQ(FindNode(t, "sms", 1), 0);
  EXPECT_EQ(FindNode(t, "sms", 2), 1);
  EXPECT_EQ(FindNode(t, "sms", 3), kNoNode);
  // "MU": Mum (node 3) and Museum (6); "summer" holds "UM", not "MU".
  EXPECT_EQ(FindNode(t, "MU", 1), 3);
  EXPECT_EQ(FindNode(t, "mU", 2), 6);
  EXPECT_EQ(FindNode(t, "mu", 3), kNoNode);
  EXPECT_EQ(FindNode(t, "m", 0), kNoNode);
  // Interleaved databases: the second "s" record is in another database.
  EXPECT_EQ(FindNode(t, "s", 4), 4);   // root, SMS Messages, Memos, then "summer plans"
  EXPECT_EQ(FindNode(t, "s", 5), 5);   // Sam
  EXPECT_EQ(FindNode(t, "s", 6), 6);   // Museum
  // Record text is compared as shown, not as bytes.
  DatabaseTree shown;
  const NodeId memos = shown.Add(shown.Add(kNoNode, "Top", "IPD Databases", ImageKey::sheet), "0DBTop", "Memos", ImageKey::None);
  shown.Add(memos, {}, "caf\xE9", ImageKey::memos, RecordSpan{1, 2});  // code page 1256: e acute
  EXPECT_EQ(FindNode(shown, QStringLiteral("CAF\u00C9"), 1), 2);
  EXPECT_EQ(FindNode(shown, QStringLiteral("caf\u00E9"), 1), 2);
}

}  // namespace
}  // namespace orchidlamp
