#pragma once

// Every modal question and message the windows put to the user goes through
// this, so the window logic can be driven without a person at the keyboard.

#include <QString>
#include <optional>
#include <string_view>

#include "core/result.h"

class QWidget;

namespace orchidlamp {

struct ChosenFile {
  QString path;
  int filterIndex = 1;  // 1-based, as the filter string lists them
};

class UserPrompts {
 public:
  virtual ~UserPrompts() = default;
  // nullopt when the user cancels.
  virtual std::optional<ChosenFile> ChooseFileToOpen(QWidget* parent, const QString& filter) = 0;
  // The save dialog: empty file name. nullopt when the user cancels or leaves
  // the name empty.
  virtual std::optional<ChosenFile> ChooseFileToSave(QWidget* parent, const QString& filter) = 0;
  // A folder to write into; nullopt when the user cancels.
  virtual std::optional<QString> ChooseFolder(QWidget* parent, const QString& title) = 0;
  // nullopt when the user cancels.
  virtual std::optional<QString> AskText(QWidget* parent, const QString& title, const QString& prompt) = 0;
  virtual bool AskYesNo(QWidget* parent, const QString& title, const QString& question) = 0;
  virtual void Tell(QWidget* parent, const Message& message) = 0;
  // Hands a saved file to the desktop's viewer for its type.
  virtual void ShowFile(const QString& path) = 0;
  // Where the next file dialog starts (the open backup's folder); each dialog
  // then starts where the last one ended.
  virtual void StartIn(const QString& folder) { (void)folder; }
};

// A filter as the system writes it ("Text (*.txt)|*.txt|...") in the form the
// dialogs take ("Text (*.txt);;..."). The descriptions must differ from one
// another: the chosen one is how the filter index is found.
QString DialogFilter(std::string_view pipeFilter);

// A command's outcome: its failure, or its message when it has one.
void TellOutcome(UserPrompts& prompts, QWidget* parent, const Result<std::optional<Message>>& outcome);

// A saved name without an extension gets the first one of the chosen filter
// ("IPD Files (*.ipd)" gives ".ipd"); a name with one stays as it is.
QString WithFilterExtension(const QString& path, const QString& filterDescription);

// The real dialogs.
class DialogPrompts final : public UserPrompts {
 public:
  std::optional<ChosenFile> ChooseFileToOpen(QWidget* parent, const QString& filter) override;
  std::optional<ChosenFile> ChooseFileToSave(QWidget* parent, const QString& filter) override;
  std::optional<QString> ChooseFolder(QWidget* parent, const QString& title) override;
  std::optional<QString> AskText(QWidget* parent, const QString& title, const QString& prompt) override;
  bool AskYesNo(QWidget* parent, const QString& title, const QString& question) override;
  void Tell(QWidget* parent, const Message& message) override;
  void ShowFile(const QString& path) override;
  void StartIn(const QString& folder) override { folder_ = folder; }

 private:
  QString folder_;
};

}  // namespace orchidlamp
