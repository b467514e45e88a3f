#include "platform/memory/virtual_time.h"

#include <algorithm>

namespace orvalle::platform::memory {

using std::chrono::nanoseconds;

VirtualTime::VirtualTime()
    : now_(std::chrono::sys_days(std::chrono::year(2026) / 3 / 2) + std::chrono::hours(9)) {}

void VirtualTime::post(std::function<void()> task) {
  const std::lock_guard lock(postedMutex_);
  posted_.push_back(std::move(task));
}

base::Subscription VirtualTime::schedule(nanoseconds delay, Timer timer) {
  const auto order = nextOrder_++;
  timers_->emplace(Key{monotonic_ + std::max(delay, nanoseconds(0)), order}, std::move(timer));
  return base::Subscription([weak = std::weak_ptr(timers_), order] {
    if (const auto timers = weak.lock()) {
      std::erase_if(*timers, [order](const auto& entry) { return entry.first.second == order; });
    }
  });
}

base::Subscription VirtualTime::after(std::chrono::milliseconds delay, std::function<void()> task) {
  return schedule(delay, {std::move(task), nanoseconds(0)});
}

base::Subscription VirtualTime::every(std::chrono::milliseconds interval, std::function<void()> task) {
  // An interval of nothing would let `advance` run for ever.
  const nanoseconds step = std::max<nanoseconds>(interval, std::chrono::milliseconds(1));
  return schedule(step, {std::move(task), step});
}

void VirtualTime::advance(nanoseconds duration) {
  runPosted();
  const auto end = monotonic_ + duration;
  while (!timers_->empty() && timers_->begin()->first.first <= end) {
    const auto step = std::max(timers_->begin()->first.first - monotonic_, nanoseconds(0));
    monotonic_ += step;
    now_ += step;
    runNextTimer();
    runPosted();
  }
  now_ += end - monotonic_;
  monotonic_ = end;
}

void VirtualTime::runNextTimer() {
  auto entry = timers_->extract(timers_->begin());
  const auto task = entry.mapped().task;
  // Back in its place before it runs, so that it can cancel itself.
  if (entry.mapped().interval > nanoseconds(0)) {
    entry.key().first = monotonic_ + entry.mapped().interval;
    timers_->insert(std::move(entry));
  }
  task();
}

void VirtualTime::runPosted() {
  for (;;) {
    std::vector<std::function<void()>> tasks;
    {
      const std::lock_guard lock(postedMutex_);
      tasks.swap(posted_);
    }
    if (tasks.empty()) return;
    for (const auto& task : tasks) task();
  }
}

}  // namespace orvalle::platform::memory
