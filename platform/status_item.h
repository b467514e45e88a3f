#pragma once

#include <memory>
#include <string>

#include "platform/drawing.h"
#include "platform/menu.h"

namespace orvalle::platform {

enum class ImagePosition { Left, Right };

/// What an item of the status bar shows.
struct StatusFace {
  Drawing image;
  /// Where the image stands, seen from the title.
  ImagePosition imagePosition = ImagePosition::Left;
  std::string title;
  /// 0 (invisible) to 1.
  double alpha = 1;
  bool operator==(const StatusFace&) const = default;
};

/// An item in the system's status bar. It leaves the bar when destroyed. Where there is no status bar, now or
/// ever, every operation is accepted and shows as soon as one appears.
class StatusItem {
 public:
  virtual ~StatusItem() = default;
  /// Whether the item has a face to draw on.
  virtual bool hasButton() const = 0;
  /// Whether some status bar shows the item at this moment.
  virtual bool isShown() const = 0;
  /// Shows the face. Touches the system only where it differs from the last one.
  virtual void setFace(const StatusFace& face) = 0;
  /// Attaches the menu that opens on a click, and mirrors every later change of the model. Its first row, a
  /// label, also serves as the item's tool tip.
  virtual void setMenu(std::shared_ptr<Menu> menu) = 0;
};

/// The system's status bar.
class StatusBar {
 public:
  virtual ~StatusBar() = default;
  virtual std::unique_ptr<StatusItem> makeItem() = 0;
};

}  // namespace orvalle::platform
