#include "generators/record_shapes.h"

namespace orchidlamp::testing {
namespace {

Bytes BigEndian(std::uint64_t value, int width) {
  Bytes out;
  for (int i = width - 1; i >= 0; --i) out.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
  return out;
}

Bytes TextZBytes(std::string_view text) { return text.empty() ? Bytes{} : TextZ(text); }

}  // namespace

Bytes WideText(std::u16string_view text, std::uint8_t lead) { return Concat({Bytes{lead}, Utf16(text)}); }

Record NestedRecord(std::uint16_t database, const std::vector<Field>& outer, const Bytes& skip,
                    const std::vector<Field>& inner, std::uint16_t handle, std::uint32_t uid) {
  std::vector<Field> fields = outer;
  fields.push_back({10, Concat({skip, FieldList(inner)})});
  return FieldRecord(database, fields, handle, uid);
}

std::vector<Field> BookmarkFields(std::string_view name, std::string_view url, const Bytes& icon) {
  std::vector<Field> fields = {
      {0x01, Concat({Hex("040100"), Bytes{static_cast<std::uint8_t>(name.size())}, Text(name)})},
      {0x02, Concat({Hex("001200"), Bytes{static_cast<std::uint8_t>(url.size())}, Text(url)})},
      {0x05, Hex("0100")},
  };
  if (!icon.empty()) fields.push_back({0x07, icon});
  return fields;
}

std::vector<Field> ServiceBookFields(const ServiceBookValues& v) {
  static constexpr std::uint8_t kConnectionTypes[6] = {1, 3, 4, 9, 10, 11};
  Bytes connection = Hex("02");
  for (int i = 0; i < 6; ++i) {
    const Bytes text = TextZ(v.connection[i]);
    connection.push_back(0x00);
    connection.push_back(static_cast<std::uint8_t>(text.size()));
    connection.push_back(kConnectionTypes[i]);
    connection.insert(connection.end(), text.begin(), text.end());
  }
  const std::vector<Field> network = {
      {0x0A, BigEndian(v.providerCode, v.providerCode > 0xFFFF ? 3 : 2)},
      {0x09, Text(v.wirelessNetwork)},
      {0x06, LE32(static_cast<std::uint32_t>(v.networkId))},
      {0x03, Text(v.networkName)},
      {0x12, Bytes(v.version, v.version + 5)},
      {0x10, Bytes(v.gateway, v.gateway + 4)},
      {0x11, Concat({BigEndian(v.ports[0], 2), BigEndian(v.ports[1], 2)})},
  };
  return {
      {0x01, Hex("0300")},
      {0x02, Hex("00000000")},
      {0x17, Hex("01")},
      {0x03, TextZBytes(v.name)},
      {0x05, Hex("0000")},
      {0x06, LE32(static_cast<std::uint32_t>(v.userId))},
      {0x07, TextZBytes(v.uid)},
      {0x08, TextZBytes(v.cid)},
      {0x09, connection},
      {0x0A, Hex("00")},
      {0x0B, Hex("01000000")},
      {0x0F, TextZBytes(v.description)},
      {0x11, Hex("0000")},
      {0x12, Hex("8A0C0000")},
      {0x18, Hex("00")},
      {0x16, FieldList(network)},
  };
}

Bytes MarkerBlock() { return Hex("FFFF02000000"); }

}  // namespace orchidlamp::testing
