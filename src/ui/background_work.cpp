#include "ui/background_work.h"

#include <QThread>
#include <algorithm>

namespace orchidlamp {

// Runs on the worker thread: turns reports into queued signals, at most one
// per change of the per-mille figure, and a requested cancel into WorkCancelled.
class BackgroundWork::Reporter final : public Progress {
 public:
  explicit Reporter(BackgroundWork* owner) : owner_(owner) {}

  void Advance(std::size_t done, std::size_t total) override {
    if (owner_->cancelRequested_) throw WorkCancelled();
    const int permille = total == 0 ? -1 : static_cast<int>(std::min<std::size_t>(done, total) * 1000 / total);
    if (permille == last_) return;
    last_ = permille;
    BackgroundWork* owner = owner_;
    QMetaObject::invokeMethod(owner, [owner, permille] { emit owner->progressed(permille); }, Qt::QueuedConnection);
  }

 private:
  BackgroundWork* owner_;
  int last_ = -2;
};

BackgroundWork::BackgroundWork(QObject* parent) : QObject(parent) {}

BackgroundWork::~BackgroundWork() { Abandon(); }

bool BackgroundWork::Launch(std::function<void(Progress&)> body, std::function<void()> completion) {
  if (busy()) return false;
  cancelRequested_ = false;
  reporter_ = std::make_unique<Reporter>(this);
  completion_ = std::move(completion);
  Reporter* reporter = reporter_.get();
  thread_ = QThread::create([body = std::move(body), reporter] { body(*reporter); });
  // Queued: the thread's finished signal comes from the worker thread.
  connect(thread_, &QThread::finished, this, &BackgroundWork::Ended, Qt::QueuedConnection);
  emit started();
  thread_->start();
  return true;
}

void BackgroundWork::Ended() {
  if (!thread_) return;
  thread_->wait();
  delete thread_;
  thread_ = nullptr;
  reporter_.reset();
  auto completion = std::move(completion_);
  completion_ = nullptr;
  if (completion) completion();
  emit finished();
}

void BackgroundWork::Abandon() {
  if (!thread_) return;
  cancelRequested_ = true;
  thread_->disconnect(this);
  thread_->wait();
  delete thread_;
  thread_ = nullptr;
  reporter_.reset();
  completion_ = nullptr;
}

}  // namespace orchidlamp
