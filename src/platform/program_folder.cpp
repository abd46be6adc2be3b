#include "platform/program_folder.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#include "core/file_io.h"
#include "core/paths.h"

namespace orchidlamp {

bool IsInstalledProgramFolder(const std::string& executableFolder) {
  return QFileInfo(QString::fromStdString(executableFolder) + QStringLiteral("/../share/orchidlamp")).isDir();
}

std::string DefaultProgramFolder() {
  const QString exeFolder = QCoreApplication::applicationDirPath();
  if (QFileInfo(exeFolder).isWritable() && !IsInstalledProgramFolder(exeFolder.toStdString()))
    return exeFolder.toStdString();
  const QString data = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
  QDir().mkpath(data);
  return data.toStdString();
}

void EnsureMediaFolder(const std::string& programFolder) {
  (void)CreateFolder(JoinPath(programFolder, "media"));
}

}  // namespace orchidlamp
