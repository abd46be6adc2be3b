#pragma once

#include <string>

namespace orchidlamp {

// Appends the UTF-8 form of a code point.
void AppendUtf8(std::string& out, char32_t codePoint);

}  // namespace orchidlamp
