#include "records/field_text.h"

#include <cstring>

#include "core/code_page_1256.h"

namespace orchidlamp {
namespace {

// What CleanControlChars keeps.
inline bool Kept(std::uint8_t c, bool keepLineBreaks) {
  return c >= 32 || (keepLineBreaks && (c == 13 || c == 10));
}

// The length of the run of bytes from 32 up that starts at p, looked at eight
// bytes at a time: a word has a byte below 32 exactly when (x - 0x20..) & ~x
// has a high bit set (bytes from 128 up have theirs masked off by ~x).
std::size_t PrintableRun(const std::uint8_t* p, std::size_t n) {
  constexpr std::uint64_t kLows = 0x2020202020202020ull, kHighs = 0x8080808080808080ull;
  std::size_t i = 0;
  for (; i + 8 <= n; i += 8) {
    std::uint64_t x;
    std::memcpy(&x, p + i, 8);
    if ((x - kLows) & ~x & kHighs) break;
  }
  while (i < n && p[i] >= 32) ++i;
  return i;
}

}  // namespace

void AppendClean(std::string& out, ByteView data, bool keepLineBreaks) {
  // Runs of printable bytes go in whole; only the bytes between them are looked at one by one.
  const std::uint8_t* p = data.data();
  const std::uint8_t* const end = p + data.size();
  while (p < end) {
    const std::size_t run = PrintableRun(p, static_cast<std::size_t>(end - p));
    out.append(reinterpret_cast<const char*>(p), run);
    p += run;
    for (; p < end && *p < 32; ++p)
      if (keepLineBreaks && (*p == 13 || *p == 10)) out.push_back(static_cast<char>(*p));
  }
}

void AppendUtf16(std::string& out, ByteView utf16be) {
  const auto& table = Cp1256OfUnicode();
  for (std::size_t i = 0; i + 2 <= utf16be.size(); i += 2)
    out.push_back(static_cast<char>(table[(utf16be[i] << 8) | utf16be[i + 1]]));
}

void AppendUtf16AfterLead(std::string& out, ByteView data, bool keepLineBreaks) {
  const auto& table = Cp1256OfUnicode();
  const ByteView units = ClippedSub(data, 1, data.size());
  for (std::size_t i = 0; i + 2 <= units.size(); i += 2) {
    const std::uint8_t c = table[(units[i] << 8) | units[i + 1]];
    if (Kept(c, keepLineBreaks)) out.push_back(static_cast<char>(c));
  }
}

void AppendRoute(std::string& out, const FieldList& fields, const MemberSpec& member, bool keepLineBreaks) {
  switch (member.route) {
    case FieldRoute::Computed:
      return;
    case FieldRoute::Clean:
      return AppendClean(out, fields.Find(member.code), keepLineBreaks);
    case FieldRoute::Paired:
    case FieldRoute::PairedRaw: {
      const ByteView wide = fields.Find(member.wideCode);
      if (!wide.empty()) return AppendUtf16AfterLead(out, wide, keepLineBreaks);
      const ByteView plain = fields.Find(member.code);
      if (member.route == FieldRoute::Paired) return AppendClean(out, plain, keepLineBreaks);
      return AppendPlain(out, plain);
    }
    case FieldRoute::Joined: {
      // A record holds one form or the other, so the member is whichever is there.
      const ByteView wide = fields.Find(member.wideCode);
      AppendClean(out, fields.Find(member.code), keepLineBreaks);
      return AppendClean(out, ClippedSub(wide, 1, wide.size()), keepLineBreaks);
    }
  }
}

std::string CleanText(ByteView data, bool keepLineBreaks) {
  std::string out;
  AppendClean(out, data, keepLineBreaks);
  return out;
}

std::string Utf16AfterLeadText(ByteView data, bool keepLineBreaks) {
  std::string out;
  AppendUtf16AfterLead(out, data, keepLineBreaks);
  return out;
}

std::string RouteText(const FieldList& fields, const MemberSpec& member, bool keepLineBreaks) {
  std::string out;
  AppendRoute(out, fields, member, keepLineBreaks);
  return out;
}

}  // namespace orchidlamp
