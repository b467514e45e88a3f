#include "platform/background.h"

#import <dispatch/dispatch.h>

#include <utility>

#include "base/liveness.h"
#include "platform/macos/factory.h"

namespace orvalle::platform::macos {
namespace {

struct Job {
  std::function<void()> work;
  std::function<void()> done;
  MainLoop& loop;
};

void carryOut(void* data) {
  const std::unique_ptr<Job> job(static_cast<Job*>(data));
  job->work();
  // Large things that the work holds are let go here, not on the loop.
  job->work = nullptr;
  job->loop.post(std::move(job->done));
}

class SerialQueue final : public Background {
 public:
  explicit SerialQueue(MainLoop& loop) : loop_(loop) {}
  SerialQueue(const SerialQueue&) = delete;
  SerialQueue& operator=(const SerialQueue&) = delete;
  ~SerialQueue() override {
    dispatch_sync(queue_, ^{
                  });
  }

  void run(std::function<void()> work, std::function<void()> done) override {
    // What has been posted when this goes stays with the loop, and must not be told any more.
    dispatch_async_f(queue_, new Job{std::move(work), liveness_.guard(std::move(done)), loop_}, carryOut);
  }

 private:
  MainLoop& loop_;
  dispatch_queue_t queue_ = dispatch_queue_create("app.orvalle.background", DISPATCH_QUEUE_SERIAL);
  base::Liveness liveness_;
};

}  // namespace

std::unique_ptr<Background> makeBackground(MainLoop& loop) {
  return std::make_unique<SerialQueue>(loop);
}

}  // namespace orvalle::platform::macos
