#include "ui/work_bar.h"

#include <QHBoxLayout>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>

#include "ui/background_work.h"

namespace orchidlamp {

WorkBar::WorkBar(BackgroundWork& work, const QString& barName, const QString& timerName, QWidget* parent)
    : QWidget(parent) {
  setObjectName(barName + QStringLiteral("_frame"));
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  bar_ = new QProgressBar(this);
  bar_->setObjectName(barName);
  bar_->setTextVisible(false);
  bar_->setFixedWidth(160);
  cancel_ = new QPushButton(QStringLiteral("Cancel"), this);
  cancel_->setObjectName(QStringLiteral("CancelWork"));
  layout->addWidget(bar_);
  layout->addWidget(cancel_);
  timer_ = new QTimer(this);
  timer_->setObjectName(timerName);
  timer_->setInterval(30);
  connect(timer_, &QTimer::timeout, this, &WorkBar::Tick);
  connect(cancel_, &QPushButton::clicked, &work, &BackgroundWork::Cancel);
  connect(&work, &BackgroundWork::started, this, &WorkBar::Started);
  connect(&work, &BackgroundWork::progressed, this, &WorkBar::Progressed);
  connect(&work, &BackgroundWork::finished, this, [this] {
    timer_->stop();
    hide();
  });
  hide();
}

void WorkBar::Started() {
  bar_->setRange(0, 100);
  bar_->setValue(0);
  timer_->start();
  show();
}

void WorkBar::Progressed(int permille) {
  if (permille < 0) return;
  timer_->stop();
  bar_->setRange(0, 1000);
  bar_->setValue(permille);
}

void WorkBar::Tick() { bar_->setValue(bar_->value() + 1 >= 100 ? 1 : bar_->value() + 1); }

}  // namespace orchidlamp
