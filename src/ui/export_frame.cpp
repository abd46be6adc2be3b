#include "ui/export_frame.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace orchidlamp {
namespace {

QString FromStd(std::string_view text) { return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())); }

}  // namespace

ExportFrame::ExportFrame(QWidget* parent) : QGroupBox(FromStd(kExportPanelCaption), parent) {
  setObjectName(QStringLiteral("ExportToText"));
  auto* layout = new QHBoxLayout(this);
  auto* frame = new QGroupBox(FromStd(kExportOptionsCaption), this);
  frame->setObjectName(QStringLiteral("Frame2"));
  auto* optionsLayout = new QVBoxLayout(frame);
  for (int i = 0; i < kExportScopes; ++i) {
    auto* option = new QRadioButton(frame);
    option->setObjectName(QStringLiteral("ExOP%1").arg(i));
    // The core keeps one option checked at a time; the buttons only mirror it.
    option->setAutoExclusive(false);
    connect(option, &QRadioButton::clicked, this, [this, i] {
      state_.Check(static_cast<ExportScope>(i));
      Sync();
    });
    optionsLayout->addWidget(option);
    options_[static_cast<std::size_t>(i)] = option;
  }
  layout->addWidget(frame, 1);

  auto* buttons = new QVBoxLayout;
  auto* text = new QPushButton(FromStd(kExportTextButton), this);
  text->setObjectName(QStringLiteral("Bexport"));
  auto* csv = new QPushButton(FromStd(kExportCsvButton), this);
  csv->setObjectName(QStringLiteral("Cexport"));
  auto* cancel = new QPushButton(FromStd(kExportCancelButton), this);
  cancel->setObjectName(QStringLiteral("Command2"));
  buttons->addWidget(text);
  buttons->addWidget(csv);
  buttons->addWidget(cancel);
  buttons->addStretch(1);
  layout->addLayout(buttons);
  connect(text, &QPushButton::clicked, this, [this] { emit exportRequested(ExportForm::Text); });
  connect(csv, &QPushButton::clicked, this, [this] { emit exportRequested(ExportForm::Csv); });
  connect(cancel, &QPushButton::clicked, this, [this] {
    state_.Cancel();
    Sync();
  });
  Sync();
}

void ExportFrame::Sync() {
  for (std::size_t i = 0; i < options_.size(); ++i) {
    options_[i]->setText(QString::fromStdString(state_.captions[i]));
    options_[i]->setVisible(state_.optionVisible[i]);
    options_[i]->setChecked(state_.checked[i]);
  }
  setVisible(state_.visible);
}

}  // namespace orchidlamp
