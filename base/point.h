#pragma once

#include <string>
#include <string_view>

namespace orvalle::base {

/// A place on the screen in points, y growing upwards from the bottom of the main screen.
struct Point {
  double x = 0;
  double y = 0;
  bool operator==(const Point&) const = default;
};

struct Size {
  double width = 0;
  double height = 0;
  bool operator==(const Size&) const = default;
};

/// A rectangle whose origin is its lower left corner.
struct Rect {
  Point origin;
  Size size;
  bool operator==(const Rect&) const = default;
};

/// "{1230, 817}": whole numbers without decimals, others in the shortest form that reads back the same.
/// Independent of the locale.
std::string pointText(Point point);

/// Reads what `pointText` writes, blanks around the numbers allowed. Anything else is the point (0, 0).
Point pointFromText(std::string_view text);

}  // namespace orvalle::base
