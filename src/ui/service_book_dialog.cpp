#include "ui/service_book_dialog.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QVBoxLayout>
#include <vector>

#include "core/workspace.h"
#include "ui/display_text.h"
#include "ui/service_book_tabs.h"
#include "ui/user_prompts.h"

namespace orchidlamp {

EditSBForm::EditSBForm(const Workspace& ws, UserPrompts& prompts, QWidget* parent)
    : QWidget(parent, Qt::Window), ws_(ws), prompts_(prompts) {
  setObjectName(QStringLiteral("EditSB"));
  setWindowTitle(QStringLiteral("Edit Service Book"));
  auto* layout = new QVBoxLayout(this);
  heading_ = new QLabel(this);
  heading_->setObjectName(QStringLiteral("Label1"));
  QFont bold = heading_->font();
  bold.setBold(true);
  heading_->setFont(bold);
  layout->addWidget(heading_);

  QTabWidget* tabs = BuildServiceBookTabs(this, hrtnet_);
  layout->addWidget(tabs, 1);

  auto* buttons = new QHBoxLayout;
  buttons->addStretch(1);
  auto* save = new QPushButton(QStringLiteral("Save"), this);
  save->setObjectName(QStringLiteral("Save"));
  save->setToolTip(QStringLiteral("Save this service book alone as a new IPD file"));
  auto* saveAll = new QPushButton(QStringLiteral("Save All"), this);
  saveAll->setObjectName(QStringLiteral("SaveAll"));
  saveAll->setToolTip(QStringLiteral("Save every service book with this one edited as a new IPD file"));
  auto* close = new QPushButton(QStringLiteral("Close"), this);
  close->setObjectName(QStringLiteral("Command1"));
  buttons->addWidget(save);
  buttons->addWidget(saveAll);
  buttons->addWidget(close);
  layout->addLayout(buttons);
  connect(save, &QPushButton::clicked, this, &EditSBForm::Save_Click);
  connect(saveAll, &QPushButton::clicked, this, &EditSBForm::SaveAll_Click);
  connect(close, &QPushButton::clicked, this, &QWidget::close);
  resize(520, 360);
}

void EditSBForm::Load(EditSB editor) {
  editor_.emplace(std::move(editor));
  heading_->setText(FromRecordText(editor_->heading()));
  for (std::size_t i = 0; i < hrtnet_.size(); ++i) hrtnet_[i]->setText(FromRecordText(editor_->hrtnet[i]));
}

void EditSBForm::Save_Click() { Run(false); }
void EditSBForm::SaveAll_Click() { Run(true); }

void EditSBForm::Run(bool all) {
  if (!editor_) return;
  for (std::size_t i = 0; i < hrtnet_.size(); ++i) editor_->hrtnet[i] = ToRecordText(hrtnet_[i]->text());
  const Result<EditorSave> saved = all ? editor_->SaveAll(ws_) : editor_->Save(ws_);
  if (!saved) {
    prompts_.Tell(this, saved.failure().message);
    return;
  }
  for (const Message& message : saved.value().messages) prompts_.Tell(this, message);
}

}  // namespace orchidlamp
