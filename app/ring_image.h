#pragma once

#include "platform/drawing.h"

namespace orvalle::app {

/// The status item's picture: a ring that fills clockwise from twelve o'clock as `progress` goes from 0 to 1
/// (more counts as 1, 0.001 or less draws no arc), with a dot in the middle when the session is `over` its
/// planned end.
platform::Drawing ringImage(double progress, bool over);

}  // namespace orvalle::app
