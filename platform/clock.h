#pragma once

#include <chrono>

namespace orvalle::platform {

/// A moment of wall-clock time.
using WallTime = std::chrono::sys_time<std::chrono::nanoseconds>;

/// Wall-clock time. It goes on while the machine sleeps and jumps when somebody sets the clock: the age of
/// what was received is measured with it, so that a session does not look fresh after a night in standby.
class Clock {
 public:
  virtual ~Clock() = default;
  virtual WallTime now() const = 0;
};

}  // namespace orvalle::platform
