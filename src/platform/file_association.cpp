#include "platform/file_association.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

namespace orchidlamp {
namespace {

// The desktop entry format wants arguments with reserved characters quoted;
// a plain path stays bare, so the usual entry reads "Exec=/path/orchidlamp %f".
QString ExecArgument(const QString& executable) {
  static const QString kReserved = QStringLiteral(" \t\n\"'\\><~|&;$*?#()`");
  bool needsQuotes = false;
  for (QChar c : executable)
    if (kReserved.contains(c)) needsQuotes = true;
  if (!needsQuotes) return executable;
  QString escaped;
  for (QChar c : executable) {
    if (c == QLatin1Char('"') || c == QLatin1Char('`') || c == QLatin1Char('$') || c == QLatin1Char('\\'))
      escaped += QLatin1Char('\\');
    escaped += c;
  }
  // Inside a desktop entry the backslash of the quoting rule is itself escaped.
  escaped.replace(QStringLiteral("\\"), QStringLiteral("\\\\"));
  return QLatin1Char('"') + escaped + QLatin1Char('"');
}

bool WriteText(const QString& path, const QString& text) {
  if (!QDir().mkpath(QFileInfo(path).absolutePath())) return false;
  QFile file(path);
  if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Text)) return false;
  const QByteArray bytes = text.toUtf8();
  return file.write(bytes) == bytes.size();
}

QString ReadText(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) return {};
  return QString::fromUtf8(file.readAll());
}

}  // namespace

QString DesktopEntryText(const QString& executable) {
  return QStringLiteral(
             "[Desktop Entry]\n"
             "Type=Application\n"
             "Name=Orchidlamp\n"
             "GenericName=BlackBerry Backup Reader\n"
             "Comment=Read and rework BlackBerry IPD and BBB backups\n"
             "Exec=%1 %f\n"
             "MimeType=%2;\n"
             "Terminal=false\n"
             "Categories=Utility;\n")
      .arg(ExecArgument(executable), QString::fromLatin1(kIpdMimeType));
}

QString MimeInfoText() {
  return QStringLiteral(
             "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
             "<mime-info xmlns=\"http://www.freedesktop.org/standards/shared-mime-info\">\n"
             "  <mime-type type=\"%1\">\n"
             "    <comment>BlackBerry IPD backup</comment>\n"
             "    <glob pattern=\"*.ipd\"/>\n"
             "  </mime-type>\n"
             "</mime-info>\n")
      .arg(QString::fromLatin1(kIpdMimeType));
}

bool PackageProvidesAssociation(const QStringList& systemDataFolders) {
  for (const QString& folder : systemDataFolders)
    if (QFileInfo::exists(folder + QStringLiteral("/applications/orchidlamp.desktop"))) return true;
  return false;
}

bool RemoveRegisteredAssociation(const QString& dataFolder) {
  const QString entryPath = dataFolder + QStringLiteral("/applications/orchidlamp.desktop");
  const QString mimePath = dataFolder + QStringLiteral("/mime/packages/orchidlamp.xml");
  // An entry is ours when everything before its command line is what we write.
  const QString ourHead = DesktopEntryText(QString()).section(QStringLiteral("Exec="), 0, 0);
  if (ReadText(entryPath).startsWith(ourHead)) QFile::remove(entryPath);
  return ReadText(mimePath) == MimeInfoText() && QFile::remove(mimePath);
}

bool RegisterFileAssociation(const QString& executable, const QString& dataFolder) {
  const bool userFolder = dataFolder.isEmpty();
  const QString data = userFolder ? QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) : dataFolder;
  if (data.isEmpty()) return false;
  const QString mimeFolder = data + QStringLiteral("/mime");
  if (userFolder) {
    QStringList systemFolders = QStandardPaths::standardLocations(QStandardPaths::GenericDataLocation);
    systemFolders.removeAll(data);
    if (PackageProvidesAssociation(systemFolders)) {
      if (RemoveRegisteredAssociation(data) && !QStandardPaths::findExecutable(QStringLiteral("update-mime-database")).isEmpty())
        QProcess::startDetached(QStringLiteral("update-mime-database"), {mimeFolder});
      return true;
    }
  }
  const bool entry = WriteText(data + QStringLiteral("/applications/orchidlamp.desktop"), DesktopEntryText(executable));
  const bool mime = WriteText(mimeFolder + QStringLiteral("/packages/orchidlamp.xml"), MimeInfoText());
  // The desktop reads the type from the compiled database; when the tool is
  // missing the package file still takes effect at the next system update.
  if (mime && userFolder && !QStandardPaths::findExecutable(QStringLiteral("update-mime-database")).isEmpty())
    QProcess::startDetached(QStringLiteral("update-mime-database"), {mimeFolder});
  return entry && mime;
}

}  // namespace orchidlamp
