#include <QApplication>

#include "orchidlamp/version.h"
#include "platform/program_folder.h"
#include "ui/main_window.h"

int main(int argc, char* argv[]) {
  QApplication app(argc, argv);
  QApplication::setOrganizationName(QStringLiteral("Orchidlamp"));
  QApplication::setApplicationName(QStringLiteral("Orchidlamp"));
  QApplication::setApplicationVersion(QString::fromLatin1(orchidlamp::kVersion));

  orchidlamp::frmMain window(orchidlamp::DefaultProgramFolder());
  window.show();
  window.OpenCommandLine(QApplication::arguments());
  return QApplication::exec();
}
