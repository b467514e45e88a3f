#include "platform/main_loop.h"

#import <dispatch/dispatch.h>

#include <cassert>
#include <utility>

#include "platform/macos/factory.h"

namespace orvalle::platform::macos {
namespace {

using Task = std::function<void()>;

/// What a timer runs. A task that cancels its own timer stays until it has returned.
class Tick {
 public:
  Tick(Task task, bool once) : task_(std::make_shared<Task>(std::move(task))), once_(once) {}

  void run() {
    const auto task = once_ ? std::exchange(task_, nullptr) : task_;
    if (task) (*task)();
  }
  void forget() { task_ = nullptr; }

 private:
  std::shared_ptr<Task> task_;
  bool once_;
};

int64_t nanoseconds(std::chrono::milliseconds duration) {
  return std::chrono::nanoseconds(duration).count();
}

/// Timers of the main queue go on while a menu or an alert is open. They keep to their first rhythm, run a
/// late tick once, and are on a clock that stands still while the machine sleeps.
base::Subscription start(std::chrono::milliseconds delay, std::chrono::milliseconds interval, Task task) {
  const bool once = interval.count() == 0;
  const auto tick = std::make_shared<Tick>(std::move(task), once);
  dispatch_source_t source =
      dispatch_source_create(DISPATCH_SOURCE_TYPE_TIMER, 0, 0, dispatch_get_main_queue());
  dispatch_source_set_timer(source, dispatch_time(DISPATCH_TIME_NOW, nanoseconds(delay)),
                            once ? DISPATCH_TIME_FOREVER : static_cast<uint64_t>(nanoseconds(interval)), 0);
  dispatch_source_set_event_handler(source, ^{
    tick->run();
  });
  dispatch_resume(source);
  return base::Subscription([source, tick] {
    dispatch_source_cancel(source);
    tick->forget();
  });
}

class MainQueue final : public MainLoop {
 public:
  void post(Task task) override {
    dispatch_async_f(dispatch_get_main_queue(), new Task(std::move(task)), [](void* data) {
      const std::unique_ptr<Task> posted(static_cast<Task*>(data));
      (*posted)();
    });
  }

  base::Subscription after(std::chrono::milliseconds delay, Task task) override {
    return start(delay, std::chrono::milliseconds(0), std::move(task));
  }

  base::Subscription every(std::chrono::milliseconds interval, Task task) override {
    assert(interval.count() > 0);
    return start(interval, interval, std::move(task));
  }
};

}  // namespace

std::unique_ptr<MainLoop> makeMainLoop() {
  return std::make_unique<MainQueue>();
}

}  // namespace orvalle::platform::macos
