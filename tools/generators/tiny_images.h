#pragma once

// The smallest pictures a backup realistically carries, valid enough for any
// decoder: what contact photos and embedded media look like to the scanners.

#include "core/bytes.h"

namespace orchidlamp::testing {

// An 8x8 grey baseline JPEG with a JFIF APP0 segment: starts FF D8 FF E0 00 10
// "JFIF" 00 and ends FF D9, with no FF D9 before its end.
Bytes TinyJpeg();
// A 2x2 RGB PNG: signature, IHDR, IDAT, IEND, each chunk with its CRC.
Bytes TinyPng();

}  // namespace orchidlamp::testing
