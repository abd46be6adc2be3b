#pragma once

#include <cstddef>

#include "core/result.h"

namespace orchidlamp {

// Long work reports through this; the window shows it, the command line ignores
// it. Calls are cheap; implementations throttle.
class Progress {
 public:
  virtual ~Progress() = default;
  // `done` of `total` items (total 0 when unknown). An implementation may throw
  // WorkCancelled from here to stop the work: the core unwinds as for any
  // CommandError, and writers remove the files they created.
  virtual void Advance(std::size_t done, std::size_t total) = 0;
};

// The user cancelled the work.
class WorkCancelled : public CommandError {
 public:
  WorkCancelled() : CommandError("Cancelled") {}
};

inline void Report(Progress* progress, std::size_t done, std::size_t total) {
  if (progress) progress->Advance(done, total);
}

}  // namespace orchidlamp
