#pragma once

#include <cstddef>

namespace orchidlamp {

// Long work reports through this; the window shows it and keeps its events
// flowing, the command line ignores it. Calls are cheap; implementations throttle.
class Progress {
 public:
  virtual ~Progress() = default;
  // `done` of `total` items (total 0 when unknown).
  virtual void Advance(std::size_t done, std::size_t total) = 0;
};

inline void Report(Progress* progress, std::size_t done, std::size_t total) {
  if (progress) progress->Advance(done, total);
}

}  // namespace orchidlamp
