#include <QApplication>

#include "ui/main_window.h"
#include "ui/program_folder.h"

int main(int argc, char* argv[]) {
  QApplication app(argc, argv);
  QApplication::setOrganizationName(QStringLiteral("Orchidlamp"));
  QApplication::setApplicationName(QStringLiteral("Orchidlamp"));
  QApplication::setApplicationVersion(QStringLiteral("3.5"));

  orchidlamp::frmMain window(orchidlamp::DefaultProgramFolder());
  window.show();
  window.OpenCommandLine(QApplication::arguments());
  return QApplication::exec();
}
