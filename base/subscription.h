#pragma once

#include <functional>
#include <utility>

namespace orvalle::base {

/// The right to stop something that was registered: a timer, a listener. Cancels when destroyed, once; an
/// empty or moved-from one does nothing. May be destroyed from inside the callback it stands for.
class [[nodiscard]] Subscription {
 public:
  Subscription() = default;
  explicit Subscription(std::function<void()> cancel) : cancel_(std::move(cancel)) {}
  Subscription(Subscription&& other) noexcept : cancel_(std::exchange(other.cancel_, nullptr)) {}
  Subscription& operator=(Subscription&& other) noexcept {
    if (this != &other) {
      reset();
      cancel_ = std::exchange(other.cancel_, nullptr);
    }
    return *this;
  }
  ~Subscription() { reset(); }

  /// Cancels now.
  void reset() {
    if (auto cancel = std::exchange(cancel_, nullptr)) cancel();
  }

  explicit operator bool() const { return static_cast<bool>(cancel_); }

 private:
  std::function<void()> cancel_;
};

}  // namespace orvalle::base
