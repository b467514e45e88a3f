#pragma once

#include <memory>
#include <utility>

namespace orvalle::base {

/// Ties callbacks to the life of their owner. Declare it as the owner's last member, so that callbacks go
/// quiet before any other member is gone, and wrap whatever is handed to timers, adapters or other objects:
///
///     finestra.onState = liveness_.guard([this](const Snapshot& s) { receive(s); });
///
/// The wrapped callable does nothing once the owner is destroyed. Main loop only.
class Liveness {
 public:
  Liveness() = default;
  Liveness(const Liveness&) = delete;
  Liveness& operator=(const Liveness&) = delete;

  template <typename Callable>
  auto guard(Callable callable) const {
    return [weak = std::weak_ptr<const char>(token_),
            callable = std::move(callable)](auto&&... arguments) mutable {
      if (!weak.expired()) callable(std::forward<decltype(arguments)>(arguments)...);
    };
  }

 private:
  std::shared_ptr<const char> token_ = std::make_shared<const char>('\0');
};

}  // namespace orvalle::base
