// The desktop association the window registers, how it steps aside for the
// package's, and the program folder an installed copy uses.

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QString>

#include "support/temp_folder.h"
#include "platform/file_association.h"
#include "platform/program_folder.h"

namespace orchidlamp {
namespace {

using namespace orchidlamp::testing;

QString Q(const std::string& s) { return QString::fromStdString(s); }

QString Read(const std::string& path) {
  QFile file(QString::fromStdString(path));
  if (!file.open(QIODevice::ReadOnly)) return {};
  return QString::fromUtf8(file.readAll());
}

void WriteFile(const std::string& path, const QString& text) {
  QFile file(Q(path));
  ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
  file.write(text.toUtf8());
}

TEST(FileAssociation, WritesADesktopEntryAndAMimeTypeForIpdFiles) {
  TempFolder data;
  EXPECT_TRUE(RegisterFileAssociation(QStringLiteral("/opt/orchidlamp/orchidlamp"), QString::fromStdString(data.path())));
  const QString entry = Read(data.File("applications/orchidlamp.desktop"));
  EXPECT_TRUE(entry.startsWith(QStringLiteral("[Desktop Entry]\n")));
  EXPECT_TRUE(entry.contains(QStringLiteral("\nExec=/opt/orchidlamp/orchidlamp %f\n")));
  EXPECT_TRUE(entry.contains(QStringLiteral("\nMimeType=application/x-orchidlamp-ipd;\n")));
  const QString mime = Read(data.File("mime/packages/orchidlamp.xml"));
  EXPECT_TRUE(mime.contains(QStringLiteral("<mime-type type=\"application/x-orchidlamp-ipd\">")));
  EXPECT_TRUE(mime.contains(QStringLiteral("<glob pattern=\"*.ipd\"/>")));

  // Written again at every start, over what was there.
  EXPECT_TRUE(RegisterFileAssociation(QStringLiteral("/usr/bin/orchidlamp"), QString::fromStdString(data.path())));
  EXPECT_TRUE(Read(data.File("applications/orchidlamp.desktop")).contains(QStringLiteral("Exec=/usr/bin/orchidlamp %f")));
  // A path that needs quoting gets it; a folder that cannot be written is no failure of the program.
  EXPECT_TRUE(DesktopEntryText(QStringLiteral("/home/a b/orchidlamp"))
                  .contains(QStringLiteral("\nExec=\"/home/a b/orchidlamp\" %f\n")));
  EXPECT_TRUE(DesktopEntryText(QStringLiteral("/home/$x/orchidlamp"))
                  .contains(QStringLiteral("\nExec=\"/home/\\\\$x/orchidlamp\" %f\n")));
  EXPECT_FALSE(RegisterFileAssociation(QStringLiteral("/usr/bin/orchidlamp"), Q(data.Write("file", Bytes{0x78}))));
}

TEST(InstalledAssociation, APackageEntryInASystemFolderIsFound) {
  TempFolder usrShare;
  TempFolder other;
  EXPECT_FALSE(PackageProvidesAssociation({Q(other.path()), Q(usrShare.path())}));
  EXPECT_FALSE(PackageProvidesAssociation({}));

  ASSERT_TRUE(RegisterFileAssociation(QStringLiteral("/usr/bin/orchidlamp"), Q(usrShare.path())));
  EXPECT_TRUE(PackageProvidesAssociation({Q(other.path()), Q(usrShare.path())}));
  // A mime package alone is no desktop entry: nothing would start the program.
  QFile::remove(Q(usrShare.File("applications/orchidlamp.desktop")));
  EXPECT_FALSE(PackageProvidesAssociation({Q(usrShare.path())}));
}

TEST(InstalledAssociation, CopiesAnEarlierStartWroteAreRemovedButFilesAUserEditedStay) {
  TempFolder user;
  ASSERT_TRUE(RegisterFileAssociation(QStringLiteral("/home/me/build/orchidlamp"), Q(user.path())));
  ASSERT_TRUE(FileExists(user.File("applications/orchidlamp.desktop")));

  EXPECT_TRUE(RemoveRegisteredAssociation(Q(user.path())));
  EXPECT_FALSE(FileExists(user.File("applications/orchidlamp.desktop")));
  EXPECT_FALSE(FileExists(user.File("mime/packages/orchidlamp.xml")));
  // Nothing left: nothing to rebuild.
  EXPECT_FALSE(RemoveRegisteredAssociation(Q(user.path())));

  // Files a user edited stay.
  ASSERT_TRUE(RegisterFileAssociation(QStringLiteral("/usr/bin/orchidlamp"), Q(user.path())));
  const std::string entry = user.File("applications/orchidlamp.desktop");
  const std::string mime = user.File("mime/packages/orchidlamp.xml");
  // A user's own copy of the package entry, with a changed name, and a type file with one more glob.
  WriteFile(entry, QStringLiteral("[Desktop Entry]\nType=Application\nName=My Orchidlamp\nExec=orchidlamp %f\n"));
  WriteFile(mime, MimeInfoText().replace(QStringLiteral("<glob pattern=\"*.ipd\"/>"),
                                         QStringLiteral("<glob pattern=\"*.ipd\"/><glob pattern=\"*.IPD\"/>")));

  EXPECT_FALSE(RemoveRegisteredAssociation(Q(user.path())));
  EXPECT_TRUE(FileExists(entry));
  EXPECT_TRUE(FileExists(mime));
}

// An installed copy writes media into the user's folder, never into bin/,
// even when run by an administrator who could.
TEST(InstalledProgramFolder, IsKnownByTheDataFolderBesideIt) {
  TempFolder prefix;
  ASSERT_TRUE(QDir().mkpath(Q(prefix.File("bin"))));
  EXPECT_FALSE(IsInstalledProgramFolder(prefix.File("bin")));
  ASSERT_TRUE(QDir().mkpath(Q(prefix.File("share/orchidlamp"))));
  EXPECT_TRUE(IsInstalledProgramFolder(prefix.File("bin")));
  EXPECT_FALSE(IsInstalledProgramFolder(prefix.File("bin/sub")));
}

}  // namespace
}  // namespace orchidlamp
