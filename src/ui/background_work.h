#pragma once

// Long work (loading, conversions, exports, media scans, splits, merges) runs
// here, on a worker thread, one piece at a time. The work reports through the
// core's Progress; the window hears of it only through queued signals, so it
// keeps painting and answering without pumping events itself, and nothing the
// user does meanwhile is queued up to replay afterwards.
//
// The work may read what the window owns but must not touch widgets; the
// window keeps the user from changing what the work reads while busy() holds.

#include <QObject>
#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <type_traits>
#include <utility>

#include "core/progress.h"

class QThread;

namespace orchidlamp {

class BackgroundWork final : public QObject {
  Q_OBJECT
 public:
  explicit BackgroundWork(QObject* parent = nullptr);
  // Cancels running work and waits for it; its completion does not run.
  ~BackgroundWork() override;

  bool busy() const { return thread_ != nullptr; }

  // Runs `work` on a worker thread, then `done` with its result on this
  // object's thread. False (and nothing runs) while other work is busy. A
  // CommandError thrown by the work, a cancel included, becomes the result's
  // failure where the result can hold one.
  template <class R>
  bool Start(std::function<R(Progress&)> work, std::function<void(R)> done) {
    auto result = std::make_shared<std::optional<R>>();
    return Launch(
        [work = std::move(work), result](Progress& progress) {
          if constexpr (std::is_constructible_v<R, Failure>) {
            try {
              result->emplace(work(progress));
            } catch (const CommandError& e) {
              result->emplace(Fail(e.what()));
            }
          } else {
            result->emplace(work(progress));
          }
        },
        [done = std::move(done), result] { done(std::move(**result)); });
  }

  // The work stops at its next progress report, as a failure; writers remove
  // the files they created.
  void Cancel() { cancelRequested_ = true; }
  bool cancelRequested() const { return cancelRequested_; }

  // Blocks until running work has ended, without running its completion: for
  // closing the window while work runs.
  void Abandon();

 signals:
  void started();
  // Per mille of the work done, or -1 while its size is unknown.
  void progressed(int permille);
  void finished();

 private:
  class Reporter;

  bool Launch(std::function<void(Progress&)> body, std::function<void()> completion);
  void Ended();

  QThread* thread_ = nullptr;
  std::unique_ptr<Reporter> reporter_;
  std::function<void()> completion_;
  std::atomic<bool> cancelRequested_{false};
};

}  // namespace orchidlamp
