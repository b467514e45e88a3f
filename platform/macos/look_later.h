#pragma once

#include <functional>

#include "base/liveness.h"

namespace orvalle::platform::macos {

/// Runs one piece of work at the next turn of the main loop, however often it is asked for in this one, also
/// while a menu is open. It is forgotten when this goes away.
class LookLater {
 public:
  explicit LookLater(std::function<void()> work) : work_(std::move(work)) {}
  LookLater(const LookLater&) = delete;
  LookLater& operator=(const LookLater&) = delete;

  void ask();

 private:
  std::function<void()> work_;
  bool asked_ = false;
  base::Liveness liveness_;
};

}  // namespace orvalle::platform::macos
