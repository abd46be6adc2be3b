#include "export/migrate_text_format.h"

namespace orchidlamp {

std::string Base64(ByteView bytes) {
  static constexpr char kDigits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string out;
  out.reserve((bytes.size() + 2) / 3 * 4);
  std::size_t at = 0;
  for (; at + 3 <= bytes.size(); at += 3) {
    const std::uint32_t v = bytes[at] << 16 | bytes[at + 1] << 8 | bytes[at + 2];
    for (int shift : {18, 12, 6, 0}) out += kDigits[(v >> shift) & 0x3F];
  }
  if (const std::size_t rest = bytes.size() - at; rest > 0) {
    const std::uint32_t v = bytes[at] << 16 | (rest == 2 ? bytes[at + 1] << 8 : 0);
    out += kDigits[(v >> 18) & 0x3F];
    out += kDigits[(v >> 12) & 0x3F];
    out += rest == 2 ? kDigits[(v >> 6) & 0x3F] : '=';
    out += '=';
  }
  return out;
}

std::string EscapeContentValue(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    switch (c) {
      case '\\': out += "\\\\"; break;
      case ',': out += "\\,"; break;
      case ';': out += "\\;"; break;
      case '\r':
        if (i + 1 < text.size() && text[i + 1] == '\n') ++i;
        out += "\\n";
        break;
      case '\n': out += "\\n"; break;
      default: out += c;
    }
  }
  return out;
}

std::string FoldContentLine(std::string_view line) {
  constexpr std::size_t kMaxOctets = 75;
  std::string out;
  out.reserve(line.size() + line.size() / 70 * 3 + 2);
  std::size_t at = 0;
  std::size_t room = kMaxOctets;
  while (line.size() - at > room) {
    std::size_t cut = at + room;
    // Back up to the start of a UTF-8 sequence; a continuation byte never leads.
    while (cut > at && (static_cast<unsigned char>(line[cut]) & 0xC0) == 0x80) --cut;
    if (cut == at) cut = at + room;  // not UTF-8: cut where the octets say
    out.append(line.substr(at, cut - at));
    out += "\r\n ";
    at = cut;
    room = kMaxOctets - 1;  // the leading space counts
  }
  out.append(line.substr(at));
  out += "\r\n";
  return out;
}

std::string CsvField(std::string_view text) {
  if (text.find_first_of(",\"\r\n") == std::string_view::npos) return std::string(text);
  std::string out = "\"";
  for (char c : text) {
    if (c == '"') out += '"';
    out += c;
  }
  out += '"';
  return out;
}

std::string EscapeHtml(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (char c : text) {
    switch (c) {
      case '&': out += "&amp;"; break;
      case '<': out += "&lt;"; break;
      case '>': out += "&gt;"; break;
      case '"': out += "&quot;"; break;
      default: out += c;
    }
  }
  return out;
}

}  // namespace orchidlamp
