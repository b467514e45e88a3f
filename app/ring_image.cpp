#include "app/ring_image.h"

#include <algorithm>

namespace orvalle::app {

platform::Drawing ringImage(double progress, bool over) {
  constexpr base::Rect kCircle{{2, 2}, {12, 12}};
  constexpr base::Point kCentre{kCircle.origin.x + kCircle.size.width / 2,
                                kCircle.origin.y + kCircle.size.height / 2};
  constexpr double kRadius = kCircle.size.width / 2;

  platform::Drawing image;
  image.size = {16, 16};
  image.isTemplate = true;

  platform::Arc track;
  track.centre = kCentre;
  track.radius = kRadius;
  track.startDegrees = 0;
  track.endDegrees = 360;
  track.lineWidth = 1.4;
  track.alpha = 0.3;
  image.arcs.push_back(track);

  if (progress > 0.001) {
    platform::Arc arc;
    arc.centre = kCentre;
    arc.radius = kRadius;
    arc.startDegrees = 90;
    arc.endDegrees = 90 - 360 * std::min(progress, 1.0);
    arc.clockwise = true;
    arc.lineWidth = 2.2;
    arc.roundCaps = true;
    image.arcs.push_back(arc);
  }
  if (over) image.ovals.push_back({{{kCentre.x - 2, kCentre.y - 2}, {4, 4}}, 1});
  return image;
}

}  // namespace orvalle::app
