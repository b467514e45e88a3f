#pragma once

#include <gdk/gdk.h>

#include <optional>

#include "base/point.h"

namespace orvalle::platform::linuxos {

/// The main screen: the primary monitor, else the first one; null pointer when there is none.
GdkMonitor* mainMonitor();

/// The program's points are GDK's pixels (screen scaling aside), counted from the lower left corner of the
/// main screen as it is now, y growing upwards. Without a screen, from GDK's own origin.
base::Rect fromGdk(const GdkRectangle& rectangle);
/// The upper left corner, as GDK has it, of a window of this height whose lower left corner is `origin`.
/// Stays within what a window system can take.
GdkPoint toGdk(base::Point origin, double height);

}  // namespace orvalle::platform::linuxos
