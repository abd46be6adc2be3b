#include "core/ipd_format.h"

#include "core/hex_text.h"

namespace orchidlamp {

Result<NameTable> ReadNameTable(ByteView file, NameCount names) {
  if (file.size() < kIpdHeaderSize) return Fail(std::string(kDbTitlesError));
  // Byte 41 is the separator, but it is read as the count's high byte: the count
  // is right for every file of fewer than 256 databases, and those are all we read.
  const std::uint32_t count = names == NameCount::One ? 1 : ReadLE16(file, 40);
  NameTable table;
  table.entries.reserve(count);
  std::size_t pos = kIpdHeaderSize;
  for (std::uint32_t i = 0; i < count; ++i) {
    if (file.size() - pos < 2) return Fail(std::string(kDbTitlesError));
    NameEntry entry;
    entry.offset = pos;
    entry.length = ReadLE16(file, pos);
    if (file.size() - pos - 2 < entry.length) return Fail(std::string(kDbTitlesError));
    entry.name = BytesToText(file.subspan(pos + 2, entry.length));
    entry.cleaned = CleanControlChars(entry.name, false);
    pos += 2 + entry.length;
    table.entries.push_back(std::move(entry));
  }
  table.recordsStart = pos;
  return table;
}

bool IsMarkerAt(ByteView file, std::size_t p, std::uint8_t last) {
  return p + 5 <= file.size() && file[p] == 0xFF && file[p + 1] == 0xFF && file[p + 2] == 0x02 &&
         file[p + 3] == 0x00 && file[p + 4] == last;
}

bool IsRecordMarkerAt(ByteView file, std::size_t p) { return IsMarkerAt(file, p, 0x00) || IsMarkerAt(file, p, 0x01); }

ByteView BodyOf(ByteView file, const RecordSpan& span) {
  if (span.first < 0 || span.last < span.first) return {};
  return ClippedSub(file, static_cast<std::size_t>(span.first), static_cast<std::size_t>(span.last - span.first + 1));
}

std::string IpdHeaderHex(std::size_t databaseCount) {
  return std::string(kIpdPrefixHex) + ByteToHex(static_cast<std::int64_t>(databaseCount % 256)) + "00";
}

std::string NameEntryHex(std::string_view name) {
  const auto length = static_cast<std::int64_t>(name.size() + 1);
  return ByteToHex(length) + ByteToHex(length >> 8) + TextToHex(name) + "00";
}

}  // namespace orchidlamp
