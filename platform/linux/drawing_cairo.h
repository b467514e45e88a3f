#pragma once

#include <cairo.h>

#include <cstdint>

#include "platform/drawing.h"

namespace orvalle::platform::linuxos {

/// What a template picture is drawn in: one opaque colour, 8 bits a channel.
struct Ink {
  std::uint8_t red = 0;
  std::uint8_t green = 0;
  std::uint8_t blue = 0;
  bool operator==(const Ink&) const = default;
};

/// Draws the picture `scale` times its size, its upper left corner at the origin. A picture that is not a
/// template is drawn in black, as its own colour is.
void draw(cairo_t* cairo, const Drawing& drawing, double scale, Ink ink);

}  // namespace orvalle::platform::linuxos
