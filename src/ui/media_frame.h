#pragma once

// The media panel on the main window: the list ResultList of the pictures a
// media search saved and its progress bar PB_PNG. Shown by the media commands.

#include <QGroupBox>
#include <string>
#include <vector>


class QListWidget;
class QProgressBar;

namespace orchidlamp {

class MediaFrame final : public QGroupBox {
  Q_OBJECT
 public:
  explicit MediaFrame(QWidget* parent = nullptr);

  // Clears the list and the bar before a run.
  void Reset();
  void ShowSaved(const std::vector<std::string>& paths);
  // Per mille of the scan done (-1: unknown).
  void ShowProgress(int permille);
  QListWidget* list() const { return list_; }

 signals:
  // A double-click on a saved picture's path.
  void openRequested(const QString& path);

 private:
  QListWidget* list_ = nullptr;
  QProgressBar* bar_ = nullptr;
};

}  // namespace orchidlamp
