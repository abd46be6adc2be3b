#include "ui/options_dialog.h"

#include <QComboBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QTabWidget>
#include <QVBoxLayout>

#include "platform/settings_store.h"
#include "ui/user_prompts.h"

namespace orchidlamp {
namespace {

QComboBox* MakeList(const QString& name, const QStringList& entries, const QString& current, QWidget* parent) {
  auto* list = new QComboBox(parent);
  list->setObjectName(name);
  list->addItems(entries);
  // A stored text that is not in the list is still shown and kept: nothing is validated.
  if (list->findText(current, Qt::MatchExactly) < 0) list->addItem(current);
  list->setCurrentIndex(list->findText(current, Qt::MatchExactly));
  return list;
}

QWidget* MakeTab(const QString& frameCaption, const QString& intro, QComboBox*& list, const QString& name,
                 const QStringList& entries, const QString& current, const QString& note, QWidget* parent) {
  auto* page = new QWidget(parent);
  auto* pageLayout = new QVBoxLayout(page);
  auto* frame = new QGroupBox(frameCaption, page);
  auto* frameLayout = new QVBoxLayout(frame);
  auto* introLabel = new QLabel(intro, frame);
  introLabel->setWordWrap(true);
  list = MakeList(name, entries, current, frame);
  auto* noteLabel = new QLabel(note, frame);
  noteLabel->setWordWrap(true);
  frameLayout->addWidget(introLabel);
  frameLayout->addWidget(list);
  frameLayout->addWidget(noteLabel);
  frameLayout->addStretch(1);
  pageLayout->addWidget(frame);
  return page;
}

}  // namespace

QStringList frmOptions::TimeZoneEntries() {
  return {"-11", "-10", "-9", "-8", "-7", "-6", "-5", "-4", "-3", "-2", "-1", "GMT",
          "+1",  "+2",  "+3", "+4", "+5", "+6", "+7", "+8", "+9", "+10", "+11"};
}

QStringList frmOptions::DelimiterEntries() { return {"SPACE", "TAB", ",", ";", "' ", "< >", "( )", "{ }"}; }

QStringList frmOptions::CharsetEntries() {
  return {"windows-1256", "windows-1252", "windows-1250", "windows-1251", "windows-1253", "windows-1254",
          "windows-1255", "iso-8859-1",   "iso-8859-7",   "koi8-r",       "shift_jis",    "gbk"};
}

frmOptions::frmOptions(UserPrompts& prompts, QWidget* parent) : QDialog(parent), prompts_(prompts) {
  setObjectName(QStringLiteral("frmOptions"));
  setWindowTitle(QStringLiteral("Options"));
  const StoredSettings stored = ReadStoredSettings();

  auto* layout = new QVBoxLayout(this);
  auto* tabs = new QTabWidget(this);
  tabs->setObjectName(QStringLiteral("tbsOptions"));
  tabs->addTab(MakeTab(QStringLiteral("Time Zone"),
                       QStringLiteral("Select number of hours to add to date to reflect your timezone, default is GMT"),
                       tzd_, QStringLiteral("tzd"), TimeZoneEntries(), QString::fromStdString(stored.timeZone),
                       QStringLiteral("The number of hours will be added to SMS, phone calls and other record dates "
                                      "to show the correct date"),
                       tabs),
               QStringLiteral("Time Difference"));
  tabs->addTab(MakeTab(QStringLiteral("Delimiter"), QStringLiteral("Select the delimiter symbol to separate exported values"),
                       exd_, QStringLiteral("exd"), DelimiterEntries(), QString::fromStdString(stored.exportDelimiter),
                       QStringLiteral("Choose the delimiter that suitable for your format"), tabs),
               QStringLiteral("Export"));
  tabs->addTab(MakeTab(QStringLiteral("Code Page"),
                       QStringLiteral("Select the code page of the backup's 8-bit texts, for the export to another "
                                      "phone"),
                       mcd_, QStringLiteral("mcd"), CharsetEntries(), QString::fromStdString(stored.migrateCharset),
                       QStringLiteral("Texts stored as Unicode, and 8-bit texts that are UTF-8, need no code page"),
                       tabs),
               QStringLiteral("Another Phone"));
  layout->addWidget(tabs);

  auto* buttons = new QHBoxLayout;
  auto* ok = new QPushButton(QStringLiteral("OK"), this);
  ok->setObjectName(QStringLiteral("cmdOK"));
  ok->setDefault(true);
  auto* cancel = new QPushButton(QStringLiteral("Cancel"), this);
  cancel->setObjectName(QStringLiteral("cmdCancel"));
  buttons->addStretch(1);
  buttons->addWidget(ok);
  buttons->addWidget(cancel);
  layout->addLayout(buttons);
  connect(ok, &QPushButton::clicked, this, &frmOptions::cmdOK_Click);
  connect(cancel, &QPushButton::clicked, this, &frmOptions::cmdCancel_Click);
  resize(420, 260);
}

void frmOptions::cmdOK_Click() {
  StoredSettings stored;
  stored.timeZone = tzd_->currentText().toStdString();
  stored.exportDelimiter = exd_->currentText().toStdString();
  stored.migrateCharset = mcd_->currentText().toStdString();
  WriteStoredSettings(stored);
  prompts_.Tell(this, Message{"Settings saved, you need to reopen your file.", "Settings", MessageIcon::Information});
  accept();
}

void frmOptions::cmdCancel_Click() { reject(); }

}  // namespace orchidlamp
