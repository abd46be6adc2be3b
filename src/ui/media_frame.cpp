#include "ui/media_frame.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QHBoxLayout>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

#include "ui/display_text.h"

namespace orchidlamp {
namespace {

class BarProgress final : public Progress {
 public:
  explicit BarProgress(QProgressBar* bar) : bar_(bar) { clock_.start(); }
  void Advance(std::size_t done, std::size_t total) override {
    if (clock_.elapsed() < 25 && done != total) return;
    if (total > 0) {
      bar_->setRange(0, 1000);
      bar_->setValue(static_cast<int>(done * 1000 / total));
    }
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    clock_.restart();
  }

 private:
  QProgressBar* bar_;
  QElapsedTimer clock_;
};

}  // namespace

MediaFrame::MediaFrame(QWidget* parent) : QGroupBox(QStringLiteral("Media"), parent) {
  setObjectName(QStringLiteral("MediaFrame"));
  auto* layout = new QVBoxLayout(this);
  list_ = new QListWidget(this);
  list_->setObjectName(QStringLiteral("ResultList"));
  list_->setMinimumHeight(80);
  list_->setToolTip(QStringLiteral("Double-click a picture to open it"));
  connect(list_, &QListWidget::itemDoubleClicked, this,
          [this](QListWidgetItem* item) { emit openRequested(item->text()); });
  bar_ = new QProgressBar(this);
  bar_->setObjectName(QStringLiteral("PB_PNG"));
  bar_->setTextVisible(false);
  auto* close = new QPushButton(QStringLiteral("Close"), this);
  close->setObjectName(QStringLiteral("MediaClose"));
  connect(close, &QPushButton::clicked, this, &QWidget::hide);
  auto* row = new QHBoxLayout;
  row->addWidget(bar_, 1);
  row->addWidget(close);
  layout->addWidget(list_);
  layout->addLayout(row);
  progress_ = std::make_unique<BarProgress>(bar_);
  hide();
}

void MediaFrame::Reset() {
  list_->clear();
  bar_->setRange(0, 1000);
  bar_->setValue(0);
}

void MediaFrame::ShowSaved(const std::vector<std::string>& paths) {
  for (const std::string& path : paths) list_->addItem(FromPath(path));
}

}  // namespace orchidlamp
