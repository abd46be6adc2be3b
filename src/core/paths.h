#pragma once

#include <string>
#include <string_view>

namespace orchidlamp {

// The part of a path up to and including its last separator ("/" or "\"); empty
// when it has none.
std::string FolderOf(std::string_view path);

// What follows the last separator.
std::string FileNameOf(std::string_view path);

// path + separator + name, with "/" as the separator.
std::string JoinPath(std::string_view folder, std::string_view name);

}  // namespace orchidlamp
