#pragma once

#include <functional>
#include <optional>
#include <string>

namespace orvalle::platform {

/// The band over the top of a window that stands in for its title bar. It takes every press of the primary
/// button in it; nothing beneath sees them.
class TitleStrip {
 public:
  virtual ~TitleStrip() = default;
  /// Starts moving the window with the press that is being handled; the window system does the rest.
  virtual void performWindowDrag() = 0;
  virtual void miniaturize() = 0;
  /// Maximises the window, or takes it back to its former size.
  virtual void zoom() = 0;
  /// The desktop's setting for double clicks on title bars: "Minimize", "None", any other word for zooming;
  /// absent where the desktop has no such setting.
  virtual std::optional<std::string> doubleClickAction() const = 0;
  /// Called on the main loop for every press, with its number in a row: 1 single, 2 double, 3 triple, and so
  /// on.
  std::function<void(int clickCount)> onMouseDown;
};

}  // namespace orvalle::platform
