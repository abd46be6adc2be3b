#include "generators/tiny_images.h"

#include "support/ipd_builder.h"

namespace orchidlamp::testing {

Bytes TinyJpeg() {
  Bytes quant(64, 0x01);
  return Concat({
      Hex("FFD8"),
      // APP0: JFIF 1.1, no units, 1:1 density, no thumbnail.
      Hex("FFE000104A46494600010100000100010000"),
      Hex("FFDB004300"), quant,
      // SOF0: 8 bits, 8x8, one component using quantisation table 0.
      Hex("FFC0000B080008000801011100"),
      // One-code Huffman tables: DC category 0 and AC end-of-block, each the code "0".
      Hex("FFC4001400" "01000000000000000000000000000000" "00"),
      Hex("FFC4001410" "01000000000000000000000000000000" "00"),
      Hex("FFDA0008010100003F00"),
      // DC "0" and EOB "0", padded with one bits: a flat mid-grey block.
      Hex("3F"),
      Hex("FFD9"),
  });
}

Bytes TinyPng() {
  return Hex(
      "89504E470D0A1A0A"
      "0000000D49484452000000020000000208020000" "00FDD49A73"
      "000000164944415478DA6338639CA6D0E0C0203021E0C302030021A004F6D9B8"
      "95380000000049454E44AE426082");
}

}  // namespace orchidlamp::testing
