// The open flow on misnamed backups: a file that is no desktop backup is read
// as the IPD it may be; and writers stopped part way leave nothing they created.

#include <gtest/gtest.h>

#include "convert/open_backup.h"
#include "core/file_io.h"
#include "records/record_kinds.h"
#include "support/ipd_builder.h"
#include "support/temp_folder.h"

namespace orchidlamp {
namespace {

using namespace orchidlamp::testing;

// An IPD named ".bbb" opens as an IPD; a broken zip gives the loader's message
// with the desktop-backup reason behind it.
TEST(OpenFlow, WhatIsNoDesktopBackupIsReadAsTheIpdItMayBe) {
  TempFolder folder;
  KindLabeller labeller;
  Workspace ws(labeller);
  const Bytes memo = IpdBuilder().Database("Handheld Agent").Database("Memos").Add(FieldRecord(1, {{1, Text("m")}})).Build();
  ASSERT_TRUE(OpenBackup(ws, folder.Write("really.bbb", memo), BackupKind::Bbb, {}));
  EXPECT_EQ(ws.tree().size(), 4u);
  const Status broken = OpenBackup(ws, folder.Write("broken.bbb", Concat({Hex("504B0304"), Text("no zip")})), BackupKind::Bbb, {});
  ASSERT_FALSE(broken);
  EXPECT_EQ(broken.failure().message.text, "Error Parsing the file, couldn't read the DB titles");
  EXPECT_NE(broken.failure().message.detail.find("Cannot open the desktop backup"), std::string::npos);
}

TEST(AbandonedWrite, RemovesTheFileItCreatedButNeverOneThatWasThere) {
  TempFolder folder;
  const std::string fresh = folder.File("fresh.ipd");
  { BufferedFileWriter w(fresh, BufferedFileWriter::Mode::InPlace, 4); w.Append(std::string_view("0123456789")); }
  EXPECT_FALSE(FileExists(fresh));

  const std::string existing = folder.Write("existing.ipd", Text("old contents"));
  { BufferedFileWriter w(existing, BufferedFileWriter::Mode::InPlace, 4); w.Append(std::string_view("NEW-")); }
  EXPECT_TRUE(FileExists(existing));

  { BufferedFileWriter w(fresh, BufferedFileWriter::Mode::InPlace); w.Append(std::string_view("done")); EXPECT_TRUE(w.Finish()); }
  EXPECT_EQ(ReadFile(fresh), Text("done"));
}

}  // namespace
}  // namespace orchidlamp
