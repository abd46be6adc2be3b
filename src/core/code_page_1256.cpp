#include "core/code_page_1256.h"

#include <iconv.h>

#include <array>
#include <stdexcept>

#include "core/utf8.h"

namespace orchidlamp {
namespace {

struct Tables {
  std::array<char32_t, 256> toUnicode{};
  std::array<std::uint8_t, 65536> fromUnicode{};
};

Tables BuildTables() {
  Tables t;
  t.fromUnicode.fill('?');
  iconv_t cd = iconv_open("UTF-32LE", "WINDOWS-1256");
  if (cd == reinterpret_cast<iconv_t>(-1)) throw std::runtime_error("iconv lacks WINDOWS-1256");
  for (int b = 0; b < 256; ++b) {
    char in = static_cast<char>(b);
    unsigned char out[4] = {};
    char* inPtr = &in;
    char* outPtr = reinterpret_cast<char*>(out);
    std::size_t inLeft = 1, outLeft = 4;
    char32_t cp = 0xFFFD;
    if (iconv(cd, &inPtr, &inLeft, &outPtr, &outLeft) != static_cast<std::size_t>(-1) && outLeft == 0)
      cp = out[0] | (out[1] << 8) | (out[2] << 16) | (static_cast<char32_t>(out[3]) << 24);
    iconv(cd, nullptr, nullptr, nullptr, nullptr);
    t.toUnicode[b] = cp;
    if (cp < 0x10000) t.fromUnicode[cp] = static_cast<std::uint8_t>(b);
  }
  iconv_close(cd);
  return t;
}

const Tables& TablesOnce() {
  static const Tables tables = BuildTables();
  return tables;
}

}  // namespace

const std::array<char32_t, 256>& Cp1256CodePoints() { return TablesOnce().toUnicode; }

std::uint8_t UnicodeToCp1256(char16_t unit) { return TablesOnce().fromUnicode[unit]; }

const std::array<std::uint8_t, 65536>& Cp1256OfUnicode() { return TablesOnce().fromUnicode; }

std::string Cp1256ToUtf8(std::string_view text) {
  const Tables& t = TablesOnce();
  std::string out;
  out.reserve(text.size());
  for (char c : text) AppendUtf8(out, t.toUnicode[static_cast<std::uint8_t>(c)]);
  return out;
}

std::string Utf8ToCp1256(std::string_view utf8) {
  const Tables& t = TablesOnce();
  std::string out;
  for (std::size_t i = 0; i < utf8.size();) {
    const auto lead = static_cast<unsigned char>(utf8[i]);
    char32_t cp = lead;
    std::size_t extra = lead < 0x80 ? 0 : lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : 3;
    if (lead >= 0x80) cp = lead & (0x3F >> extra);
    for (std::size_t k = 1; k <= extra && i + k < utf8.size(); ++k)
      cp = (cp << 6) | (static_cast<unsigned char>(utf8[i + k]) & 0x3F);
    i += extra + 1;
    out.push_back(cp < 0x10000 ? static_cast<char>(t.fromUnicode[cp]) : '?');
  }
  return out;
}

}  // namespace orchidlamp
