#include <QApplication>
#include <QTemporaryDir>
#include <QTimer>
#include <cstdio>

#include "ui/main_window.h"
#include "ui/program_folder.h"
#include "ui/screenshot_tour.h"

namespace {

// ORCHIDLAMP_SCREENSHOTS=<folder>: open the file of the command line, grab a
// picture of every record kind and dialog into the folder, and quit. Media go
// to a throw-away program folder so a tour leaves nothing behind.
int RunTour(const QString& folder) {
  QTemporaryDir programFolder;
  orchidlamp::TourPrompts prompts;
  orchidlamp::frmMain window(programFolder.path().toStdString(), &prompts);
  window.show();
  window.OpenCommandLine(QApplication::arguments());
  int written = 0;
  QTimer::singleShot(0, &window, [&] {
    const QStringList files = orchidlamp::RunScreenshotTour(window, prompts, folder);
    for (const QString& file : files) std::printf("%s\n", qPrintable(file));
    written = static_cast<int>(files.size());
    QApplication::quit();
  });
  QApplication::exec();
  return written > 0 ? 0 : 1;
}

}  // namespace

int main(int argc, char* argv[]) {
  QApplication app(argc, argv);
  QApplication::setOrganizationName(QStringLiteral("Orchidlamp"));
  QApplication::setApplicationName(QStringLiteral("Orchidlamp"));
  QApplication::setApplicationVersion(QStringLiteral("3.5"));

  if (const QString tour = qEnvironmentVariable("ORCHIDLAMP_SCREENSHOTS"); !tour.isEmpty()) return RunTour(tour);

  orchidlamp::frmMain window(orchidlamp::DefaultProgramFolder());
  window.show();
  window.OpenCommandLine(QApplication::arguments());
  return QApplication::exec();
}
