#pragma once

#include <functional>

namespace orvalle::platform {

/// Work that would keep the user waiting, done beside the main loop.
class Background {
 public:
  virtual ~Background() = default;
  /// Runs `work` on a thread of its own, after everything that was handed in before it, and then `done` on
  /// the main loop, never inside this call. `work` touches nothing but what it was given. At the end of the
  /// program work that was handed in is still carried out; `done` is then not called.
  virtual void run(std::function<void()> work, std::function<void()> done) = 0;
};

}  // namespace orvalle::platform
