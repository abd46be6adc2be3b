#pragma once

// A walk through the window for pictures of it: after the backup given on the
// command line has loaded, every kind of record is selected in turn and every
// dialog is opened, and each state is grabbed into a PNG. Nothing is asked of
// the user; media pictures go to the program folder the window was given, and
// no file dialog is answered, so nothing is written beside the backup.
//
// The program orchidlamp-screenshots (main.cpp beside this file) runs it; the
// window itself knows nothing of it.

#include <QString>
#include <QStringList>
#include <optional>
#include <vector>

#include "ui/user_prompts.h"

namespace orchidlamp {

class frmMain;

// Answers for the tour: the open dialog names `secondFile` (the merge's second
// backup), every other question is cancelled, messages are kept.
class TourPrompts final : public UserPrompts {
 public:
  QString secondFile;
  std::vector<Message> told;

  std::optional<ChosenFile> ChooseFileToOpen(QWidget*, const QString&) override;
  std::optional<ChosenFile> ChooseFileToSave(QWidget*, const QString&) override { return std::nullopt; }
  std::optional<QString> AskText(QWidget*, const QString&, const QString&) override { return std::nullopt; }
  bool AskYesNo(QWidget*, const QString&, const QString&) override { return false; }
  void Tell(QWidget*, const Message& message) override { told.push_back(message); }
  void ShowFile(const QString&) override {}
  std::optional<QString> ChooseFolder(QWidget*, const QString&) override { return std::nullopt; }
};

// Writes the pictures into `folder` (created when missing) and returns the
// names written. The window must be shown with its backup loaded.
QStringList RunScreenshotTour(frmMain& window, TourPrompts& prompts, const QString& folder);

}  // namespace orchidlamp
