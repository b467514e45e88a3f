#pragma once

namespace orvalle::platform {

/// How long the user has left keyboard and pointer alone.
class InputIdle {
 public:
  virtual ~InputIdle() = default;
  /// Seconds since the last input of any kind to any program; finite, not negative. 0 where the system does
  /// not tell.
  virtual double secondsSinceInput() = 0;
};

}  // namespace orvalle::platform
