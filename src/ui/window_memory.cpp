#include "ui/window_memory.h"

#include <QSettings>

namespace orchidlamp {
namespace {

constexpr auto kGroup = "Window";

QSettings Store() { return QSettings(QStringLiteral("Orchidlamp"), QStringLiteral("Orchidlamp")); }

}  // namespace

QStringList WithRecentFile(QStringList recent, const QString& path) {
  recent.removeAll(path);
  recent.prepend(path);
  while (recent.size() > kRecentFileCount) recent.removeLast();
  return recent;
}

QStringList StoredRecentFiles() {
  QSettings settings = Store();
  settings.beginGroup(QLatin1String(kGroup));
  QStringList recent = settings.value(QStringLiteral("RecentFiles")).toStringList();
  while (recent.size() > kRecentFileCount) recent.removeLast();
  return recent;
}

void StoreRecentFiles(const QStringList& recent) {
  QSettings settings = Store();
  settings.beginGroup(QLatin1String(kGroup));
  settings.setValue(QStringLiteral("RecentFiles"), recent);
}

QByteArray StoredWindowState(const QString& name) {
  QSettings settings = Store();
  settings.beginGroup(QLatin1String(kGroup));
  return settings.value(name).toByteArray();
}

void StoreWindowState(const QString& name, const QByteArray& state) {
  QSettings settings = Store();
  settings.beginGroup(QLatin1String(kGroup));
  settings.setValue(name, state);
}

}  // namespace orchidlamp
