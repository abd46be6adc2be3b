#pragma once

// Ties ".ipd" files to the program on a freedesktop desktop: a desktop entry
// whose command is the executable followed by the file (Exec=<exe> %f) and a
// shared-mime-info type for *.ipd, both under the user's data folder. Written
// at every start; failures are ignored, as a user without the right simply gets
// no association. Skipped when ORCHIDLAMP_NO_ASSOCIATION is set.

#include <QString>
#include <QStringList>

namespace orchidlamp {

inline constexpr const char* kIpdMimeType = "application/x-orchidlamp-ipd";

QString DesktopEntryText(const QString& executable);
QString MimeInfoText();

// Writes under `dataFolder` (the GenericDataLocation when empty):
// applications/orchidlamp.desktop and mime/packages/orchidlamp.xml, and for the
// user's own folder also asks the desktop to rebuild its type database. Returns
// false when anything could not be written; callers ignore it.
// With the user's own folder, an association an installed package provides
// (see PackageProvidesAssociation) wins: nothing is written, the copies an
// earlier start wrote are removed, and the result is true.
bool RegisterFileAssociation(const QString& executable, const QString& dataFolder = QString());

// True when one of `systemDataFolders` (the XDG data folders other than the
// user's, /usr/share and the like) holds applications/orchidlamp.desktop, as an
// installed package puts it. The user's folder is read first, so a per-user
// entry of the same name would hide the package's one with its icon and types.
bool PackageProvidesAssociation(const QStringList& systemDataFolders);

// Removes applications/orchidlamp.desktop and mime/packages/orchidlamp.xml from
// `dataFolder` when they are the ones RegisterFileAssociation writes; files a
// user has edited stay. Returns true when the type file was removed, so that
// the caller rebuilds the type database.
bool RemoveRegisteredAssociation(const QString& dataFolder);

}  // namespace orchidlamp
