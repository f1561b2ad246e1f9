#pragma once

#include <QObject>
#include <QThreadPool>

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <utility>

namespace minutor {

// Runs a long read of the history on a worker of the thread pool, so that
// the panel that asked stays responsive. Starting again cancels the run in
// flight, and only the newest run's progress and result come back, on the
// thread that made the runner. Drop() and the runner's end cancel the run in
// flight and throw away what it still finds.
template <typename T>
class NewestRun {
 public:
  // The work looks at the flag between records and may tell its progress,
  // 0 to 100.
  using Work = std::function<T(const std::atomic<bool>& cancel, const std::function<void(int)>& progress)>;

  NewestRun() = default;
  NewestRun(const NewestRun&) = delete;
  NewestRun& operator=(const NewestRun&) = delete;
  ~NewestRun() { Drop(); }

  void Start(Work work, std::function<void(const T&)> done, std::function<void(int)> progress = {}) {
    Drop();
    auto run = std::make_shared<Run>();
    run->receiver = &receiver_;
    run->done = std::move(done);
    run->progress = std::move(progress);
    current_ = run;
    QThreadPool::globalInstance()->start([run, work = std::move(work)] {
      const auto tell = [&run](int value) {
        run->Post([run, value] {
          if (run->live && run->progress) {
            run->progress(value);
          }
        });
      };
      T result = work(run->cancel, tell);
      run->Post([run, result = std::move(result)] {
        if (run->live) {
          run->live = false;
          run->done(result);
        }
      });
    });
  }

  void Drop() {
    if (!current_) {
      return;
    }
    current_->cancel = true;
    current_->live = false;
    {
      const std::lock_guard lock(current_->mutex);
      current_->receiver = nullptr;
    }
    current_.reset();
  }

  bool IsRunning() const { return current_ && current_->live; }

 private:
  struct Run {
    std::atomic<bool> cancel = false;
    bool live = true;  // touched on the runner's thread only
    std::function<void(const T&)> done;
    std::function<void(int)> progress;
    std::mutex mutex;  // guards receiver, which the worker posts to
    QObject* receiver = nullptr;

    template <typename F>
    void Post(F&& call) {
      const std::lock_guard lock(mutex);
      if (receiver != nullptr) {
        QMetaObject::invokeMethod(receiver, std::forward<F>(call), Qt::QueuedConnection);
      }
    }
  };

  QObject receiver_;  // lives on the runner's thread; its events die with it
  std::shared_ptr<Run> current_;
};

}  // namespace minutor
