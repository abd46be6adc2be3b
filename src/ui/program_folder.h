#pragma once

#include <string>

namespace orchidlamp {

// "The program's folder" for files the program writes (media, contact pictures):
// the executable's folder when it is writable, else the per-user data folder.
// Needs a QCoreApplication.
std::string DefaultProgramFolder();

// Creates folder + "media" when it does not exist, as the window does at start.
void EnsureMediaFolder(const std::string& programFolder);

}  // namespace orchidlamp
