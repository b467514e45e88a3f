#pragma once

#include <optional>

#include "base/point.h"

namespace orvalle::platform {

/// The screens, in points, y growing upwards.
class Screen {
 public:
  virtual ~Screen() = default;
  /// The main screen without panels and docks; absent when there is no screen.
  virtual std::optional<base::Rect> mainVisibleFrame() const = 0;
};

}  // namespace orvalle::platform
