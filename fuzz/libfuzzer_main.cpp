// The libFuzzer program of one target; ORCHIDLAMP_FUZZ_ENTRY names its entry function.

#include "fuzz_targets.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  return orchidlamp::fuzz::ORCHIDLAMP_FUZZ_ENTRY(data, size);
}
