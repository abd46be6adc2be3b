#pragma once

// A progress bar with a Cancel button bound to a BackgroundWork: shown while
// the work runs, with the per mille the work reports, or a moving bar while
// its size is unknown.

#include <QWidget>

class QProgressBar;
class QPushButton;
class QTimer;

namespace orchidlamp {

class BackgroundWork;

class WorkBar final : public QWidget {
  Q_OBJECT
 public:
  // `barName` names the progress bar ("pg" on the main window), `timerName`
  // the timer that moves it while the size is unknown.
  WorkBar(BackgroundWork& work, const QString& barName, const QString& timerName, QWidget* parent = nullptr);

  QProgressBar* bar() const { return bar_; }

 private:
  void Started();
  void Progressed(int permille);
  void Tick();

  QProgressBar* bar_ = nullptr;
  QPushButton* cancel_ = nullptr;
  QTimer* timer_ = nullptr;
};

}  // namespace orchidlamp
