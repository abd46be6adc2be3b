// orchidlamp-screenshots FOLDER FILE: opens FILE in the window under whatever
// display there is, grabs a picture of every record kind and dialog into
// FOLDER, prints the names written and quits. Media go to a throw-away program
// folder, so a tour leaves nothing behind. scripts/screenshot runs it under a
// virtual display.

#include <QApplication>
#include <QTemporaryDir>
#include <QTimer>
#include <cstdio>

#include "screenshots/screenshot_tour.h"
#include "ui/main_window.h"

int main(int argc, char* argv[]) {
  QApplication app(argc, argv);
  QApplication::setOrganizationName(QStringLiteral("Orchidlamp"));
  QApplication::setApplicationName(QStringLiteral("Orchidlamp"));
  if (argc != 3) {
    std::fprintf(stderr, "usage: orchidlamp-screenshots FOLDER FILE\n");
    return 2;
  }
  const QString folder = QString::fromLocal8Bit(argv[1]);
  QTemporaryDir programFolder;
  orchidlamp::TourPrompts prompts;
  orchidlamp::frmMain window(programFolder.path().toStdString(), &prompts);
  window.show();
  window.OpenGivenPath(QString::fromLocal8Bit(argv[2]));
  int written = 0;
  QTimer::singleShot(0, &window, [&] {
    while (window.busy()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
    const QStringList files = orchidlamp::RunScreenshotTour(window, prompts, folder);
    for (const QString& file : files) std::printf("%s\n", qPrintable(file));
    written = static_cast<int>(files.size());
    QApplication::quit();
  });
  QApplication::exec();
  return written > 0 ? 0 : 1;
}
