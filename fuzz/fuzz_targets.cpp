#include "fuzz_targets.h"

#include <array>

namespace orchidlamp::fuzz {

std::span<const FuzzTarget> AllTargets() {
  static constexpr std::array<FuzzTarget, 8> kTargets = {{
      {"ipd_loader", &FuzzIpdLoader},
      {"record_decoders", &FuzzRecordDecoders},
      {"export", &FuzzExport},
      {"editing", &FuzzEditing},
      {"desktop_backup", &FuzzDesktopBackup},
      {"migration", &FuzzMigration},
      {"keep_going", &FuzzKeepGoing},
      {"settings", &FuzzSettings},
  }};
  return kTargets;
}

}  // namespace orchidlamp::fuzz
