#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "base/point.h"
#include "base/subscription.h"

namespace orvalle::platform {

struct Alert {
  /// Literal text, no markup.
  std::string message;
  std::string informative;
  /// In the order given.
  std::vector<std::string> buttons;
  /// The one that Return presses.
  std::size_t returnButton = 0;
  /// The button that closing the window counts as; the last one unless given.
  std::optional<std::size_t> closing = {};
};

/// Of the bar that moves.
inline constexpr base::Size kProgressBarSize{260, 20};

/// Questions to the user, one at a time: later ones wait their turn while everything else in the program goes
/// on.
class Alerts {
 public:
  virtual ~Alerts() = default;
  /// Shows the alert when its turn comes. `done` is called once, on the main loop, with the index of the
  /// button.
  virtual void show(const Alert& alert, std::function<void(std::size_t button)> done) = 0;
  /// The same with a bar that moves under the texts. When the subscription goes first, the
  /// alert goes too, on show or still waiting, and `done` is not called.
  [[nodiscard]] virtual base::Subscription showProgress(const Alert& alert,
                                                        std::function<void(std::size_t button)> done) = 0;
};

}  // namespace orvalle::platform
