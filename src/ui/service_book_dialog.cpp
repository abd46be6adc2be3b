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

  for (std::size_t i = 0; i < hrtnet_.size(); ++i) {
    hrtnet_[i] = new QLineEdit(this);
    hrtnet_[i]->setObjectName(QStringLiteral("hrtnet%1").arg(i));
  }
  // The same places as on the main window's service-book panel: a value in
  // several boxes (the gateway address, the ports) sits on one row.
  struct Row {
    const char* label;
    std::vector<int> boxes;
  };
  const std::vector<std::pair<const char*, std::vector<Row>>> pages = {
      {"Service Book",
       {{"Name", {17}}, {"Description", {21}}, {"Data Source UID", {18}}, {"Data Source", {19}}, {"User ID", {20}}}},
      {"Network",
       {{"Network Provider Code", {0}},
        {"Wireless Network", {1}},
        {"Network Name", {2}},
        {"", {3}},
        {"", {4}},
        {"Gateway IP", {5, 6, 7, 8}},
        {"Ports", {9, 10}}}},
      {"Browser",
       {{"Gateway/URL", {11}},
        {"Home Page", {12}},
        {"", {13}},
        {"", {14}},
        {"", {15}},
        {"", {16}}}},
  };
  auto* tabs = new QTabWidget(this);
  tabs->setObjectName(QStringLiteral("SSTab1"));
  for (const auto& [caption, rows] : pages) {
    auto* page = new QWidget(tabs);
    auto* form = new QFormLayout(page);
    for (const Row& row : rows) {
      auto* parts = new QHBoxLayout;
      for (int b : row.boxes) parts->addWidget(hrtnet_[static_cast<std::size_t>(b)]);
      form->addRow(QString::fromLatin1(row.label), parts);
    }
    tabs->addTab(page, QString::fromLatin1(caption));
  }
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
