#include "platform/linux/screen_space.h"

#include <algorithm>
#include <cmath>

namespace orvalle::platform::linuxos {
namespace {

GdkPoint mainLowerLeft() {
  auto* monitor = mainMonitor();
  if (!monitor) return {0, 0};
  GdkRectangle geometry;
  gdk_monitor_get_geometry(monitor, &geometry);
  return {geometry.x, geometry.y + geometry.height};
}

int pixel(double value) {
  // X11 has 16 bits for a coordinate, and scaled screens take some of them.
  constexpr double kFarthest = 8192;
  return std::isfinite(value) ? static_cast<int>(std::lround(std::clamp(value, -kFarthest, kFarthest))) : 0;
}

}  // namespace

GdkMonitor* mainMonitor() {
  auto* display = gdk_display_get_default();
  auto* primary = gdk_display_get_primary_monitor(display);
  return primary ? primary : gdk_display_get_monitor(display, 0);
}

base::Rect fromGdk(const GdkRectangle& rectangle) {
  const auto corner = mainLowerLeft();
  return {{static_cast<double>(rectangle.x - corner.x),
           static_cast<double>(corner.y - rectangle.y - rectangle.height)},
          {static_cast<double>(rectangle.width), static_cast<double>(rectangle.height)}};
}

GdkPoint toGdk(base::Point origin, double height) {
  const auto corner = mainLowerLeft();
  return {pixel(corner.x + origin.x), pixel(corner.y - origin.y - height)};
}

}  // namespace orvalle::platform::linuxos
