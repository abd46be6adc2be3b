#pragma once

// What the window keeps between runs beside the two settings: the files opened
// last, its own size and place, and where the splitter stood. Kept in the
// settings store's "Window" group.

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace orchidlamp {

inline constexpr int kRecentFileCount = 8;

// `path` first, without an earlier entry of the same path, at most
// kRecentFileCount entries.
QStringList WithRecentFile(QStringList recent, const QString& path);

QStringList StoredRecentFiles();
void StoreRecentFiles(const QStringList& recent);

// saveGeometry() / saveState() blobs by name ("Geometry", "Splitter").
QByteArray StoredWindowState(const QString& name);
void StoreWindowState(const QString& name, const QByteArray& state);

}  // namespace orchidlamp
