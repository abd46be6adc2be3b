#include "fuzz_targets.h"

#include <array>

namespace orchidlamp::fuzz {

std::span<const FuzzTarget> AllTargets() {
  static constexpr std::array<FuzzTarget, 7> kTargets = {{
      {"ipd_loader", &FuzzIpdLoader},
      {"record_decoders", &FuzzRecordDecoders},
      {"export", &FuzzExport},
      {"editing", &FuzzEditing},
      {"desktop_backup", &FuzzDesktopBackup},
      {"keep_going", &FuzzKeepGoing},
      {"settings", &FuzzSettings},
  }};
  return kTargets;
}

}  // namespace orchidlamp::fuzz
