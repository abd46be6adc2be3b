#include "platform/file_association.h"

#include <gtest/gtest.h>

#include <QFile>

#include "gui_test_support.h"
#include "support/temp_folder.h"

namespace orchidlamp {
namespace {

using namespace orchidlamp::testing;

QString Read(const std::string& path) {
  QFile file(QString::fromStdString(path));
  if (!file.open(QIODevice::ReadOnly)) return {};
  return QString::fromUtf8(file.readAll());
}

TEST(FileAssociation, WritesADesktopEntryAndAMimeTypeForIpdFiles) {
  GuiApp();
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
}

TEST(FileAssociation, QuotesAnExecutablePathThatNeedsIt) {
  EXPECT_TRUE(DesktopEntryText(QStringLiteral("/home/a b/orchidlamp"))
                  .contains(QStringLiteral("\nExec=\"/home/a b/orchidlamp\" %f\n")));
  EXPECT_TRUE(DesktopEntryText(QStringLiteral("/home/$x/orchidlamp"))
                  .contains(QStringLiteral("\nExec=\"/home/\\\\$x/orchidlamp\" %f\n")));
}

TEST(FileAssociation, AFolderThatCannotBeWrittenIsNoFailureOfTheProgram) {
  GuiApp();
  TempFolder data;
  const std::string blocker = data.Write("file", Text("x"));
  EXPECT_FALSE(RegisterFileAssociation(QStringLiteral("/usr/bin/orchidlamp"), QString::fromStdString(blocker)));
}

}  // namespace
}  // namespace orchidlamp
