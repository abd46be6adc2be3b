#pragma once

#include <string>

namespace orchidlamp {

// "The program's folder" for files the program writes (media, contact pictures):
// the executable's folder when it is writable and not an installed copy, else
// the per-user data folder. Needs a QCoreApplication.
std::string DefaultProgramFolder();

// True for an executable folder that an installation made: the installed data
// folder share/orchidlamp stands beside it (as bin/ and share/ under a prefix).
// Such a folder is the system's even where an administrator may write to it.
bool IsInstalledProgramFolder(const std::string& executableFolder);

// Creates folder + "media" when it does not exist, as the window does at start.
void EnsureMediaFolder(const std::string& programFolder);

}  // namespace orchidlamp
