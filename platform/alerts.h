#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace orvalle::platform {

struct Alert {
  /// Literal text, no markup.
  std::string message;
  std::string informative;
  /// In the order given.
  std::vector<std::string> buttons;
  /// The one that Return presses.
  std::size_t returnButton = 0;
};

/// Questions to the user, one at a time: later ones wait their turn while everything else in the program goes
/// on.
class Alerts {
 public:
  virtual ~Alerts() = default;
  /// Shows the alert when its turn comes. `done` is called once, on the main loop, with the index of the
  /// button; closing the window counts as the last button.
  virtual void show(const Alert& alert, std::function<void(std::size_t button)> done) = 0;
};

}  // namespace orvalle::platform
