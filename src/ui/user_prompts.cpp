#include "ui/user_prompts.h"

#include <QFileDialog>
#include <QInputDialog>
#include <QDesktopServices>
#include <QMessageBox>
#include <QUrl>

namespace orchidlamp {

std::optional<ChosenFile> DialogPrompts::ChooseFileToOpen(QWidget* parent, const QString& filter) {
  QString selected;
  const QString path = QFileDialog::getOpenFileName(parent, QString(), QString(), filter, &selected);
  if (path.isEmpty()) return std::nullopt;
  const int index = static_cast<int>(filter.split(QStringLiteral(";;")).indexOf(selected));
  return ChosenFile{path, index < 0 ? 1 : index + 1};
}

std::optional<ChosenFile> DialogPrompts::ChooseFileToSave(QWidget* parent, const QString& filter) {
  QString selected;
  const QString path = QFileDialog::getSaveFileName(parent, QString(), QString(), filter, &selected);
  if (path.isEmpty()) return std::nullopt;
  const int index = static_cast<int>(filter.split(QStringLiteral(";;")).indexOf(selected));
  return ChosenFile{path, index < 0 ? 1 : index + 1};
}

std::optional<QString> DialogPrompts::AskText(QWidget* parent, const QString& title, const QString& prompt) {
  bool ok = false;
  const QString text = QInputDialog::getText(parent, title, prompt, QLineEdit::Normal, QString(), &ok);
  if (!ok) return std::nullopt;
  return text;
}

bool DialogPrompts::AskYesNo(QWidget* parent, const QString& title, const QString& question) {
  return QMessageBox::question(parent, title, question, QMessageBox::Yes | QMessageBox::No) == QMessageBox::Yes;
}

void DialogPrompts::Tell(QWidget* parent, const Message& message) {
  QMessageBox box(parent);
  switch (message.icon) {
    case MessageIcon::Information: box.setIcon(QMessageBox::Information); break;
    case MessageIcon::Exclamation: box.setIcon(QMessageBox::Warning); break;
    case MessageIcon::Critical: box.setIcon(QMessageBox::Critical); break;
    case MessageIcon::None: box.setIcon(QMessageBox::NoIcon); break;
  }
  // A message without a title of its own carries the program's name.
  box.setWindowTitle(message.title.empty() ? QStringLiteral("Orchidlamp") : QString::fromStdString(message.title));
  box.setText(QString::fromStdString(message.text));
  box.setStandardButtons(QMessageBox::Ok);
  box.exec();
}

void DialogPrompts::ShowFile(const QString& path) { QDesktopServices::openUrl(QUrl::fromLocalFile(path)); }

QString DialogFilter(std::string_view pipeFilter) {
  const QStringList parts = QString::fromUtf8(pipeFilter.data(), static_cast<qsizetype>(pipeFilter.size()))
                                .split(QLatin1Char('|'));
  QStringList descriptions;
  for (qsizetype i = 0; i < parts.size(); i += 2) descriptions.push_back(parts[i]);
  return descriptions.join(QStringLiteral(";;"));
}

}  // namespace orchidlamp
