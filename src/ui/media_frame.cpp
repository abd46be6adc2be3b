#include "ui/media_frame.h"

#include <QHBoxLayout>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

#include "ui/display_text.h"

namespace orchidlamp {

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
  hide();
}

void MediaFrame::Reset() {
  list_->clear();
  bar_->setRange(0, 1000);
  bar_->setValue(0);
}

void MediaFrame::ShowProgress(int permille) {
  if (permille < 0) return;
  bar_->setValue(permille);
}

void MediaFrame::ShowSaved(const std::vector<std::string>& paths) {
  for (const std::string& path : paths) list_->addItem(FromPath(path));
}

}  // namespace orchidlamp
