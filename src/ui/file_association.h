#pragma once

// Ties ".ipd" files to the program on a freedesktop desktop: a desktop entry
// whose command is the executable followed by the file (Exec=<exe> %f) and a
// shared-mime-info type for *.ipd, both under the user's data folder. Written
// at every start; failures are ignored, as a user without the right simply gets
// no association. Skipped when ORCHIDLAMP_NO_ASSOCIATION is set.

#include <QString>

namespace orchidlamp {

inline constexpr const char* kIpdMimeType = "application/x-orchidlamp-ipd";

QString DesktopEntryText(const QString& executable);
QString MimeInfoText();

// Writes under `dataFolder` (the GenericDataLocation when empty):
// applications/orchidlamp.desktop and mime/packages/orchidlamp.xml, and for the
// user's own folder also asks the desktop to rebuild its type database. Returns
// false when anything could not be written; callers ignore it.
bool RegisterFileAssociation(const QString& executable, const QString& dataFolder = QString());

}  // namespace orchidlamp
