#include "platform/background.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <utility>

#include "base/liveness.h"
#include "platform/linux/factory.h"

namespace orvalle::platform::linuxos {
namespace {

/// One thread, there from the first work on.
class WorkerThread final : public Background {
 public:
  explicit WorkerThread(MainLoop& loop) : loop_(loop) {}
  WorkerThread(const WorkerThread&) = delete;
  WorkerThread& operator=(const WorkerThread&) = delete;

  ~WorkerThread() override {
    if (!thread_.joinable()) return;
    {
      const std::lock_guard lock(mutex_);
      ending_ = true;
    }
    changed_.notify_one();
    thread_.join();
  }

  void run(std::function<void()> work, std::function<void()> done) override {
    {
      const std::lock_guard lock(mutex_);
      // What has been posted when this goes stays with the loop, and must not be told any more.
      waiting_.push_back({std::move(work), liveness_.guard(std::move(done))});
    }
    changed_.notify_one();
    if (!thread_.joinable()) thread_ = std::thread([this] { carryOut(); });
  }

 private:
  struct Job {
    std::function<void()> work;
    std::function<void()> done;
  };

  void carryOut() {
    std::unique_lock lock(mutex_);
    for (;;) {
      changed_.wait(lock, [this] { return ending_ || !waiting_.empty(); });
      if (waiting_.empty()) return;
      auto job = std::move(waiting_.front());
      waiting_.pop_front();
      lock.unlock();
      job.work();
      // Large things that the work holds are let go here, not on the loop.
      job.work = nullptr;
      loop_.post(std::move(job.done));
      lock.lock();
    }
  }

  MainLoop& loop_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<Job> waiting_;
  bool ending_ = false;
  std::thread thread_;
  base::Liveness liveness_;
};

}  // namespace

std::unique_ptr<Background> makeBackground(MainLoop& loop) {
  return std::make_unique<WorkerThread>(loop);
}

}  // namespace orvalle::platform::linuxos
