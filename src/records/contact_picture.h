#pragma once

#include <string>

#include "records/record_kinds.h"

namespace orchidlamp {

// Writes contact photos as folder + "PIC" + number + ".jpg" (the folder with its
// trailing separator), over any file of that name without truncating it, and
// gives the path as the contact's PhotoFile. A photo that cannot be written
// leaves PhotoFile empty.
ContactPictureSink ContactPictureWriter(std::string programFolder);

}  // namespace orchidlamp
