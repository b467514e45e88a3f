#pragma once

#include <functional>
#include <memory>
#include <string>

#include "base/point.h"

namespace orvalle::platform {

enum class TextColour { White, SystemRed };

/// How a floating panel is made.
struct PanelSpec {
  base::Size contentSize;
  double cornerRadius = 0;
  /// The one label: its frame in the panel, its font size in points. Centred, bold, growing with the panel's
  /// width.
  base::Rect labelFrame;
  double labelFontSize = 0;
};

/// A small translucent window without title bar that floats above the windows of all programs on every
/// desktop, takes no focus, is left out of window lists, and is dragged by any point of it. Made hidden, at
/// the origin (0, 0). Places are those of its lower left corner, y growing upwards.
class Panel {
 public:
  virtual ~Panel() = default;
  virtual void setFrameOrigin(base::Point origin) = 0;
  virtual base::Point frameOrigin() const = 0;
  /// Literal text, no markup; shows nothing new when both are as they were.
  virtual void setLabel(const std::string& text, TextColour colour) = 0;
  /// On the screen, in front, without making the program the active one; nothing when it is there already.
  virtual void orderFrontRegardless() = 0;
  /// Off the screen; nothing when it is off already.
  virtual void orderOut() = 0;
  /// Called on the main loop whenever the panel has moved, by the user or by `setFrameOrigin`.
  std::function<void()> onDidMove;
};

class Panels {
 public:
  virtual ~Panels() = default;
  /// Whether a panel stays above the windows of other programs here. The answer is the same for the life of
  /// the process.
  virtual bool canFloat() const = 0;
  virtual std::unique_ptr<Panel> make(const PanelSpec& spec) = 0;
};

}  // namespace orvalle::platform
