#include "platform/settings_store.h"

#include <QSettings>
#include <QString>

namespace orchidlamp {

StoredSettings ReadStoredSettings() {
  QSettings store(QStringLiteral("Orchidlamp"), QStringLiteral("Orchidlamp"));
  store.beginGroup(QStringLiteral("Options"));
  StoredSettings s;
  s.timeZone = store.value(QStringLiteral("TimeZone"), QStringLiteral("GMT")).toString().toStdString();
  s.exportDelimiter = store.value(QStringLiteral("ExportDelimiter"), QStringLiteral(",")).toString().toStdString();
  s.migrateCharset =
      store.value(QStringLiteral("MigrateCharset"), QString::fromStdString(s.migrateCharset)).toString().toStdString();
  return s;
}

void WriteStoredSettings(const StoredSettings& settings) {
  QSettings store(QStringLiteral("Orchidlamp"), QStringLiteral("Orchidlamp"));
  store.beginGroup(QStringLiteral("Options"));
  store.setValue(QStringLiteral("TimeZone"), QString::fromStdString(settings.timeZone));
  store.setValue(QStringLiteral("ExportDelimiter"), QString::fromStdString(settings.exportDelimiter));
  store.setValue(QStringLiteral("MigrateCharset"), QString::fromStdString(settings.migrateCharset));
  store.sync();
}

}  // namespace orchidlamp
