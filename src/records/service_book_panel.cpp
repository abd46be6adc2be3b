#include "records/service_book_panel.h"

#include <algorithm>
#include <array>

#include "core/hex_text.h"
#include "records/decoders.h"
#include "records/field_walk.h"
#include "records/field_text.h"

namespace orchidlamp {
namespace {

constexpr int kName = 0x03, kUserId = 0x06, kUid = 0x07, kCid = 0x08, kConnection = 0x09, kDescription = 0x0F,
              kNetwork = 0x16;

std::string BoxText(ByteView data) { return CleanText(data, false); }

// The data's hex digits read as they stand as one unsigned number, in decimal.
std::string UnsignedDecimal(ByteView data) {
  std::string digits = "0";
  for (std::uint8_t byte : data) {
    int carry = byte;
    for (auto it = digits.rbegin(); it != digits.rend(); ++it) {
      const int v = (*it - '0') * 256 + carry;
      *it = static_cast<char>('0' + v % 10);
      carry = v / 10;
    }
    while (carry) digits.insert(digits.begin(), static_cast<char>('0' + carry % 10)), carry /= 10;
  }
  return digits;
}

// Field 0x09 comes in two layouts. The editor writes the first (length-type
// sub-fields after two bytes); the second (type-length after one byte) is read
// only when the first finds none of its six sub-fields.
void DecodeConnection(ByteView data, ServiceBookBoxes& boxes) {
  const std::string hex = BytesToHex(data);
  const std::string_view all = hex;
  constexpr std::array<const char*, 6> kLenTypeCodes = {"1", "3", "4", "9", "10", "11"};
  constexpr std::array<const char*, 6> kTypeLenCodes = {"1", "8", "6", "7", "3", "2"};
  std::array<std::string, 6> values;
  const std::string_view afterTwo = all.size() > 4 ? all.substr(4) : std::string_view{};
  for (std::size_t i = 0; i < 6; ++i) values[i] = FindFieldLenType(afterTwo, kLenTypeCodes[i]);
  if (std::all_of(values.begin(), values.end(), [](const std::string& v) { return v.empty(); })) {
    const std::string_view afterOne = all.size() > 2 ? all.substr(2) : std::string_view{};
    for (std::size_t i = 0; i < 6; ++i) values[i] = FindFieldTypeLen(afterOne, kTypeLenCodes[i]);
  }
  for (std::size_t i = 0; i < 6; ++i)
    if (!values[i].empty()) boxes[11 + i] = CleanControlChars(HexToText(values[i]), false);
}

void DecodeNetwork(ByteView data, ServiceBookBoxes& boxes) {
  const FieldList sub(data);
  if (ByteView v = sub.Find(0x06); !v.empty()) boxes[0] = std::to_string(LittleEndianNumber(v));
  if (ByteView v = sub.Find(0x0A); !v.empty()) boxes[1] = UnsignedDecimal(v);
  if (ByteView v = sub.Find(0x09); !v.empty()) boxes[2] = BoxText(v);
  if (ByteView v = sub.Find(0x03); !v.empty()) boxes[3] = BoxText(v);
  if (ByteView v = sub.Find(0x12); !v.empty()) {
    std::string dotted;
    for (std::size_t i = 0; i < std::min<std::size_t>(v.size(), 5); ++i) {
      if (i > 0) dotted += '.';
      dotted += std::to_string(v[i]);
    }
    boxes[4] = dotted;
  }
  if (ByteView v = sub.Find(0x10); !v.empty()) {
    // A short gateway field reads its missing bytes as 0, as the digit cut does.
    for (std::size_t i = 0; i < 4; ++i) boxes[5 + i] = std::to_string(i < v.size() ? v[i] : 0);
  }
  if (ByteView v = sub.Find(0x11); !v.empty()) {
    const std::string hex = BytesToHex(v);
    boxes[9] = std::to_string(HexToLong(hex.substr(0, 4)));
    boxes[10] = std::to_string(HexToLong(hex.size() > 4 ? hex.substr(4, 4) : std::string()));
  }
}

}  // namespace

ServiceBookBoxes DecodeServiceBookPanel(ByteView body) {
  ServiceBookBoxes boxes;
  const FieldList fields = RecordFields(body);
  if (ByteView v = fields.Find(kName); !v.empty()) boxes[17] = BoxText(v);
  if (ByteView v = fields.Find(kUid); !v.empty()) boxes[18] = BoxText(v);
  if (ByteView v = fields.Find(kCid); !v.empty()) boxes[19] = BoxText(v);
  if (ByteView v = fields.Find(kUserId); !v.empty()) boxes[20] = std::to_string(LittleEndianNumber(v));
  if (ByteView v = fields.Find(kDescription); !v.empty()) boxes[21] = BoxText(v);
  if (ByteView v = fields.Find(kNetwork); !v.empty()) DecodeNetwork(v, boxes);
  if (ByteView v = fields.Find(kConnection); !v.empty()) DecodeConnection(v, boxes);
  return boxes;
}

void ApplyServiceBookBoxes(const ServiceBookBoxes& boxes, std::array<std::string, kServiceBookBoxes>& panel) {
  for (std::size_t i = 0; i < kServiceBookBoxes; ++i)
    if (boxes[i]) panel[i] = *boxes[i];
}

namespace {

RecordLabel Label(ByteView, const FieldList& fields) { return {BoxText(fields.Find(kName))}; }

constexpr FrameLayout kFrame{"Servicebook", "Service Book", {}, {}, {}, {}, true};

}  // namespace

// No members: a click fills the panel's boxes instead, and nothing is exported.
const RecordForm kServiceBookForm = {{}, {}, &kFrame};

const RecordDecoder kServiceBookDecoder = {RecordFields, nullptr, Label};

}  // namespace orchidlamp
