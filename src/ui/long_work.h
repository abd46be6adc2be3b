#pragma once

// Long work without a frozen window. RunResponsive runs work (a load, a save,
// a split, a merge, reading the merge's second file) off the window's thread
// while the window keeps painting. The caller waits here, with
// events processed at least every 30 ms, and gets the work's result back; user
// input waits until the work is done, so nothing can change what the work reads.
//
// The work must only read what the window owns, and must not touch widgets.

#include <QCoreApplication>
#include <QElapsedTimer>
#include <chrono>
#include <future>
#include <utility>

#include "core/progress.h"

namespace orchidlamp {

template <class Work>
auto RunResponsive(Work&& work) -> decltype(work()) {
  auto done = std::async(std::launch::async, std::forward<Work>(work));
  while (done.wait_for(std::chrono::milliseconds(15)) != std::future_status::ready)
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents, 15);
  return done.get();
}

// For work on the window's own thread that reports through Progress: events run
// at most every 25 ms of work, user input excluded.
class EventPump final : public Progress {
 public:
  EventPump() { clock_.start(); }
  void Advance(std::size_t, std::size_t) override {
    if (clock_.elapsed() < 25) return;
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    clock_.restart();
  }

 private:
  QElapsedTimer clock_;
};

}  // namespace orchidlamp
