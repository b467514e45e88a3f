#pragma once

#include <vector>

#include "base/point.h"

namespace orvalle::platform {

/// A part of a circle, stroked in ink. Angles in degrees, counter-clockwise from three o'clock, y growing
/// upwards.
struct Arc {
  base::Point centre;
  double radius = 0;
  double startDegrees = 0;
  double endDegrees = 0;
  bool clockwise = false;
  double lineWidth = 0;
  bool roundCaps = false;
  double alpha = 1;
  bool operator==(const Arc&) const = default;
};

/// A filled circle or ellipse in its bounding rectangle.
struct Oval {
  base::Rect bounds;
  double alpha = 1;
  bool operator==(const Oval&) const = default;
};

/// A small picture as geometry, drawn in list order, arcs before ovals. A template picture has no colours of
/// its own: adapters draw it in the ink of the place it stands in, and its alphas are kept.
struct Drawing {
  base::Size size;
  std::vector<Arc> arcs;
  std::vector<Oval> ovals;
  bool isTemplate = false;
  bool operator==(const Drawing&) const = default;
};

}  // namespace orvalle::platform
