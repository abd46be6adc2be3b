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

Bytes TwoMemos() {
  IpdBuilder b;
  b.Database("Handheld Agent").Database("Memos");  // database 0 would be read as bookmarks
  b.Add(FieldRecord(1, {{1, Text("first")}}));
  b.Add(FieldRecord(1, {{1, Text("second")}}));
  return b.Build();
}

struct Opened {
  KindLabeller labeller;
  Workspace ws{labeller};
  Status status = Ok();
};

void Open(Opened& o, const std::string& path, BackupKind kind) { o.status = OpenBackup(o.ws, path, kind, {}); }

TEST(OpenFlow, AnIpdNamedAsADesktopBackupOpensAsAnIpd) {
  TempFolder folder;
  Opened o;
  Open(o, folder.Write("really.bbb", TwoMemos()), BackupKind::Bbb);
  ASSERT_TRUE(o.status);
  EXPECT_EQ(o.ws.tree().size(), 5u);
}

TEST(OpenFlow, ABrokenDesktopBackupGivesTheLoaderMessageWithTheArchiveReasonBehind) {
  TempFolder folder;
  Opened o;
  Open(o, folder.Write("broken.bbb", Concat({Text("PK"), Hex("0304"), Text("not really a zip")})), BackupKind::Bbb);
  ASSERT_FALSE(o.status);
  EXPECT_EQ(o.status.failure().message.text, "Error Parsing the file, couldn't read the DB titles");
  EXPECT_NE(o.status.failure().message.detail.find("Cannot open the desktop backup"), std::string::npos);
  EXPECT_FALSE(o.ws.menus().saveAs);
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
