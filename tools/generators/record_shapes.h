#pragma once

// Field shapes the device uses beyond the plain field list, shared by the sample
// and the large-backup generator.

#include <cstdint>
#include <string_view>
#include <vector>

#include "support/ipd_builder.h"

namespace orchidlamp::testing {

// A text field's 128-form: one lead byte, then UTF-16 big-endian.
Bytes WideText(std::u16string_view text, std::uint8_t lead = 0x00);

// The nested shape of "Address Book - All" and "Calendar - All": the record's
// own fields, then field 10 holding `skip` before the kind's field list.
Record NestedRecord(std::uint16_t database, const std::vector<Field>& outer, const Bytes& skip,
                    const std::vector<Field>& inner, std::uint16_t handle, std::uint32_t uid);

// A bookmark's payload: the name behind 04 01 00 and a length byte, the URL
// behind 00 12 00 and a length byte, then whatever else the record holds.
std::vector<Field> BookmarkFields(std::string_view name, std::string_view url, const Bytes& icon);

// A service book as devices write it: 0x01, 0x02, 0x17, name 0x03, 0x05, user
// id 0x06, UID 0x07, CID 0x08, connection 0x09 (two bytes, then length-type
// sub-fields each followed by one byte), 0x0A, 0x0B, description 0x0F, 0x11,
// 0x12, 0x18 and the network list 0x16 (sub-fields in the record layout).
struct ServiceBookValues {
  std::string_view name, uid, cid, description;
  std::int32_t userId = -1;
  // Connection sub-fields 1, 3, 4, 9, 10, 11.
  std::string_view connection[6];
  std::uint32_t providerCode = 0;  // network 0x0A, big-endian digits
  std::string_view wirelessNetwork, networkName;  // network 0x09, 0x03
  std::int32_t networkId = 0;                     // network 0x06
  std::uint8_t version[5] = {};                   // network 0x12
  std::uint8_t gateway[4] = {};                   // network 0x10
  std::uint16_t ports[2] = {};                    // network 0x11, big-endian
};
std::vector<Field> ServiceBookFields(const ServiceBookValues& v);

// The 6-byte block devices leave between some records: FF FF 02 00 00 and one byte.
Bytes MarkerBlock();

}  // namespace orchidlamp::testing
