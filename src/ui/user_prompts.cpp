#include "ui/user_prompts.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QRegularExpression>
#include <QInputDialog>
#include <QDesktopServices>
#include <QMessageBox>
#include <QUrl>

namespace orchidlamp {

std::optional<ChosenFile> DialogPrompts::ChooseFileToOpen(QWidget* parent, const QString& filter) {
  QString selected;
  const QString path = QFileDialog::getOpenFileName(parent, QString(), folder_, filter, &selected);
  if (path.isEmpty()) return std::nullopt;
  folder_ = QFileInfo(path).absolutePath();
  const int index = static_cast<int>(filter.split(QStringLiteral(";;")).indexOf(selected));
  return ChosenFile{path, index < 0 ? 1 : index + 1};
}

std::optional<ChosenFile> DialogPrompts::ChooseFileToSave(QWidget* parent, const QString& filter) {
  QString selected;
  const QString path = QFileDialog::getSaveFileName(parent, QString(), folder_, filter, &selected);
  if (path.isEmpty()) return std::nullopt;
  folder_ = QFileInfo(path).absolutePath();
  const int index = static_cast<int>(filter.split(QStringLiteral(";;")).indexOf(selected));
  return ChosenFile{WithFilterExtension(path, selected), index < 0 ? 1 : index + 1};
}

std::optional<QString> DialogPrompts::ChooseFolder(QWidget* parent, const QString& title) {
  const QString folder = QFileDialog::getExistingDirectory(parent, title, folder_);
  if (folder.isEmpty()) return std::nullopt;
  folder_ = folder;
  return folder;
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
  if (!message.detail.empty()) box.setDetailedText(QString::fromStdString(message.detail));
  box.setStandardButtons(QMessageBox::Ok);
  box.exec();
}

void DialogPrompts::ShowFile(const QString& path) { QDesktopServices::openUrl(QUrl::fromLocalFile(path)); }

void TellOutcome(UserPrompts& prompts, QWidget* parent, const Result<std::optional<Message>>& outcome) {
  if (!outcome)
    prompts.Tell(parent, outcome.failure().message);
  else if (outcome.value())
    prompts.Tell(parent, *outcome.value());
}

QString WithFilterExtension(const QString& path, const QString& filterDescription) {
  if (!QFileInfo(path).suffix().isEmpty()) return path;
  static const QRegularExpression kPattern(QStringLiteral("\\(\\*(\\.[^ ;)*]+)"));
  const QRegularExpressionMatch match = kPattern.match(filterDescription);
  return match.hasMatch() ? path + match.captured(1) : path;
}

QString DialogFilter(std::string_view pipeFilter) {
  const QStringList parts = QString::fromUtf8(pipeFilter.data(), static_cast<qsizetype>(pipeFilter.size()))
                                .split(QLatin1Char('|'));
  QStringList descriptions;
  for (qsizetype i = 0; i < parts.size(); i += 2) descriptions.push_back(parts[i]);
  return descriptions.join(QStringLiteral(";;"));
}

}  // namespace orchidlamp
