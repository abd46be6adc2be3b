#include "editing/service_book_record.h"

#include <charconv>
#include <vector>

#include "core/hex_text.h"

namespace orchidlamp {
namespace {

std::string Le16Hex(std::size_t value, std::string_view what) {
  if (value > 0xFFFF) throw CommandError("The service book's " + std::string(what) + " is too long to be written");
  return ByteToHex(static_cast<std::int64_t>(value)) + ByteToHex(static_cast<std::int64_t>(value >> 8));
}

std::string Be16Hex(std::int64_t value) { return ByteToHex(value >> 8) + ByteToHex(value); }

// A field of the record (or of the network list): length, type, data.
std::string FieldHex(std::string_view typeHex, std::string_view dataHex) {
  return Le16Hex(dataHex.size() / 2, "field") + std::string(typeHex) + std::string(dataHex);
}

std::string LowByte(std::string_view text, std::size_t box) { return ByteToHex(ServiceBookNumber(text, box)); }

// Field 0x09: 0x02, then six length-type sub-fields, one per value 11-16, each
// with a 0x00 after its text. The length's high byte is always 0x00 and its low
// byte wraps: the layout cannot say more.
std::string ConnectionField(const EditorValues& values) {
  static constexpr std::array<std::string_view, 6> kSubTypes = {"01", "03", "04", "09", "0A", "0B"};
  std::string data = "02";
  for (std::size_t i = 0; i < kSubTypes.size(); ++i) {
    const std::string& text = values[11 + i];
    data += "00" + ByteToHex(static_cast<std::int64_t>(text.size() + 1)) + std::string(kSubTypes[i]) +
            TextToHex(text) + "00";
  }
  return FieldHex("09", data);
}

std::vector<std::string> SplitAtDots(std::string_view text) {
  std::vector<std::string> parts;
  std::size_t start = 0;
  for (;;) {
    const std::size_t dot = text.find('.', start);
    parts.emplace_back(text.substr(start, dot == std::string_view::npos ? std::string_view::npos : dot - start));
    if (dot == std::string_view::npos) return parts;
    start = dot + 1;
  }
}

// Field 0x16's data: the network settings from values 0-10, each sub-field
// written only when its values are there.
std::string NetworkData(const EditorValues& raw) {
  std::array<std::string, 11> v;
  for (std::size_t i = 0; i < v.size(); ++i) v[i] = CleanControlChars(raw[i], false);
  std::string data;
  if (!v[1].empty()) data += "01000A" + LowByte(v[1], 1);
  if (!v[2].empty()) data += FieldHex("09", TextToHex(v[2]));
  if (!v[0].empty()) data += "040006" + LowByte(v[0], 0) + "000000";
  if (!v[3].empty()) data += FieldHex("03", TextToHex(v[3]));
  if (v[4] == "0,0,0,0,0") {
    data += "0500120000000000";
  } else if (!v[4].empty()) {
    const std::vector<std::string> parts = SplitAtDots(v[4]);
    if (parts.size() < 5)
      throw CommandError("The value \"" + v[4] + "\" of hrtnet(4) needs five numbers joined by \".\"");
    data += "050012";
    for (std::size_t i = 0; i < 5; ++i) data += LowByte(parts[i], 4);
  }
  if (!v[5].empty() && !v[6].empty() && !v[7].empty() && !v[8].empty())
    data += "040010" + LowByte(v[5], 5) + LowByte(v[6], 6) + LowByte(v[7], 7) + LowByte(v[8], 8);
  if (!v[9].empty() && !v[10].empty())
    data += "040011" + Be16Hex(ServiceBookNumber(v[9], 9)) + Be16Hex(ServiceBookNumber(v[10], 10));
  return data;
}

}  // namespace

std::int64_t ServiceBookNumber(std::string_view text, std::size_t box) {
  std::string_view t = text;
  while (!t.empty() && (t.front() == ' ' || t.front() == '\t')) t.remove_prefix(1);
  while (!t.empty() && (t.back() == ' ' || t.back() == '\t')) t.remove_suffix(1);
  if (!t.empty() && t.front() == '+') t.remove_prefix(1);
  std::int64_t value = 0;
  const auto [end, ec] = std::from_chars(t.data(), t.data() + t.size(), value);
  if (t.empty() || ec != std::errc() || end != t.data() + t.size())
    throw CommandError("The value \"" + std::string(text) + "\" of hrtnet(" + std::to_string(box) +
                       ") is not a number");
  return value;
}

std::string MakeStringField(std::string_view text, std::string_view typeHex, bool terminate) {
  return Le16Hex(text.size() + (terminate ? 1 : 0), "text") + std::string(typeHex) + TextToHex(text) +
         (terminate ? "00" : "");
}

BuiltRecord BuildRecord(std::string_view code, const EditorValues& values) {
  const std::string_view header = Mid(code, 13, 14);
  const std::string_view fields = Mid(code, 27);
  const std::string f01 = FindField(fields, "01");
  const std::string f02 = FindField(fields, "02");
  const std::string f17 = FindField(fields, "23");
  const std::string f05 = FindField(fields, "05");
  const std::string f10 = FindField(fields, "16");
  const std::string f11 = FindField(fields, "17");
  const std::string f12 = FindField(fields, "18");
  const std::string f18 = FindField(fields, "24");
  // The source's 0x09 and 0x0F fields are not copied: values 11-16 and 21 replace them.

  std::string out;
  auto copy = [&out](std::string_view typeHex, const std::string& data) {
    if (!data.empty()) out += FieldHex(typeHex, data);
  };
  copy("01", f01);
  copy("02", f02);
  copy("17", f17);
  copy("05", f05);

  if (values[17].empty() || values[18].empty() || values[19].empty())
    return {{}, Message{std::string(kBlankServiceBookValue), {}, MessageIcon::Critical}};
  out += MakeStringField(values[17], "03", true);
  out += MakeStringField(values[18], "07", true);
  out += MakeStringField(values[19], "08", true);

  if (values[20] == "-1")
    out += "040006FFFFFFFF";
  else if (!values[20].empty())
    // Only the low byte: a deliberate width limit of this field when it is not -1.
    out += "010006" + ReverseHexBytes(LowByte(values[20], 20));
  if (!values[21].empty()) out += MakeStringField(values[21], "0F", true);

  out += ConnectionField(values);
  copy("10", f10);
  copy("11", f11);
  copy("12", f12);
  copy("18", f18);

  const std::string network = NetworkData(values);
  if (!network.empty()) out += FieldHex("16", network);

  const std::string length = Le16Hex(7 + out.size() / 2, "record");
  return {"0000" + length + "0000" + std::string(header) + out, std::nullopt};
}

}  // namespace orchidlamp
