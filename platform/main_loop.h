#pragma once

#include <chrono>
#include <functional>

#include "base/subscription.h"

namespace orvalle::platform {

/// The loop that runs everything: portable code lives on its thread only. Timers run on a clock that never
/// jumps and may stand still while the machine sleeps. No callback ever runs inside the call that registers
/// it.
class MainLoop {
 public:
  virtual ~MainLoop() = default;

  /// Runs `task` once, soon, on the loop. May be called from any thread; everything else here only on the
  /// loop's.
  virtual void post(std::function<void()> task) = 0;
  /// Runs `task` once, `delay` from now, unless the subscription is gone by then.
  virtual base::Subscription after(std::chrono::milliseconds delay, std::function<void()> task) = 0;
  /// Runs `task` every `interval`, first one interval from now, as long as the subscription lives. A late
  /// tick is run once, not made up for.
  virtual base::Subscription every(std::chrono::milliseconds interval, std::function<void()> task) = 0;
};

}  // namespace orvalle::platform
