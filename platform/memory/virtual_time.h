#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

#include "platform/clock.h"
#include "platform/main_loop.h"

namespace orvalle::platform::memory {

/// A clock and a main loop whose time moves only when a test says so. Starts at a fixed moment of 2026.
class VirtualTime : public Clock, public MainLoop {
 public:
  VirtualTime();

  WallTime now() const override { return now_; }
  void post(std::function<void()> task) override;
  base::Subscription after(std::chrono::milliseconds delay, std::function<void()> task) override;
  base::Subscription every(std::chrono::milliseconds interval, std::function<void()> task) override;

  /// Lets `duration` pass: wall time and timers move together, and everything due on the way runs in the
  /// order of its due time, first registered first.
  void advance(std::chrono::nanoseconds duration);
  /// Runs what was posted, and what that posts, without letting time pass.
  void runPosted();
  /// Sets the wall clock forward or back without letting time pass for the timers: a clock change, or a
  /// sleep.
  void jumpWallClock(std::chrono::nanoseconds by) { now_ += by; }
  /// The number of timers that wait.
  std::size_t timerCount() const { return timers_->size(); }

 private:
  struct Timer {
    std::function<void()> task;
    /// Zero for a timer that runs once.
    std::chrono::nanoseconds interval{};
  };
  /// Due time on the timers' clock, then order of registration.
  using Key = std::pair<std::chrono::nanoseconds, std::uint64_t>;
  using Timers = std::map<Key, Timer>;

  base::Subscription schedule(std::chrono::nanoseconds delay, Timer timer);
  void runNextTimer();

  WallTime now_;
  std::chrono::nanoseconds monotonic_{};
  std::uint64_t nextOrder_ = 0;
  std::shared_ptr<Timers> timers_ = std::make_shared<Timers>();
  std::mutex postedMutex_;
  std::vector<std::function<void()>> posted_;
};

}  // namespace orvalle::platform::memory
