#include "ui/main_controller.h"

#include "ui/display_text.h"
#include "platform/settings_store.h"
#include "ui/tree_search.h"

namespace orchidlamp {

MainController::MainController(std::string programFolder, QObject* parent) : QObject(parent), ws_(labeller_) {
  ws_.folders().program = std::move(programFolder);
}

QString MainController::OpenFilter() { return QStringLiteral("IPD Files (*.ipd);;BBB Files (*.bbb)"); }

BackupKind MainController::KindOfFilterIndex(int filterIndex) {
  return filterIndex == 2 ? BackupKind::Bbb : BackupKind::Ipd;
}

std::optional<BackupKind> MainController::KindOfGivenPath(const QString& path) {
  if (path.endsWith(QStringLiteral(".ipd"), Qt::CaseSensitive)) return BackupKind::Ipd;
  if (path.endsWith(QStringLiteral(".bbb"), Qt::CaseSensitive)) return BackupKind::Bbb;
  return std::nullopt;
}

QString MainController::CommandLinePath(const QStringList& arguments) {
  return arguments.mid(1).join(QLatin1Char(' '));
}

Status MainController::Open(const QString& path, BackupKind kind, Progress* progress) {
  Status status = Load(path, kind, progress);
  emit changed();
  return status;
}

Status MainController::Load(const QString& path, BackupKind kind, Progress* progress) {
  const std::string file = ToPath(path);
  const StoredSettings settings = ReadStoredSettings();
  Status status = OpenBackup(ws_, file, kind, settings, progress);
  // A desktop backup picked under the IPD filter opens by what it holds (the
  // desktop-backup route already falls back to loading an IPD).
  if (!status && ws_.tree().size() < 2 && kind == BackupKind::Ipd && BackupKindOf(file) == BackupKind::Bbb)
    status = OpenBackup(ws_, file, BackupKind::Bbb, settings, progress);
  return status;
}

ClickResult MainController::Click(NodeId node) {
  ws_.selected = node;
  ClickResult result = ClickNode(ws_, node);
  emit changed();
  return result;
}

NodeId MainController::NextMatch(const QString& text) {
  ++occurrence_;
  return FindNode(ws_.tree(), text, occurrence_);
}

}  // namespace orchidlamp
