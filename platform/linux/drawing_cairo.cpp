#include "platform/linux/drawing_cairo.h"

#include <numbers>

namespace orvalle::platform::linuxos {
namespace {

double radians(double degrees) {
  return degrees * std::numbers::pi / 180;
}

void stroke(cairo_t* cairo, const Arc& arc) {
  cairo_set_line_width(cairo, arc.lineWidth);
  cairo_set_line_cap(cairo, arc.roundCaps ? CAIRO_LINE_CAP_ROUND : CAIRO_LINE_CAP_BUTT);
  cairo_new_path(cairo);
  // With y growing upwards cairo's direction of growing angles is counter-clockwise, as the model's is.
  const auto path = arc.clockwise ? cairo_arc_negative : cairo_arc;
  path(cairo, arc.centre.x, arc.centre.y, arc.radius, radians(arc.startDegrees), radians(arc.endDegrees));
  cairo_stroke(cairo);
}

void fill(cairo_t* cairo, const Oval& oval) {
  const auto& [origin, size] = oval.bounds;
  if (size.width <= 0 || size.height <= 0) return;
  cairo_save(cairo);
  cairo_translate(cairo, origin.x + size.width / 2, origin.y + size.height / 2);
  cairo_scale(cairo, size.width / 2, size.height / 2);
  cairo_new_path(cairo);
  cairo_arc(cairo, 0, 0, 1, 0, radians(360));
  cairo_restore(cairo);
  cairo_fill(cairo);
}

}  // namespace

void draw(cairo_t* cairo, const Drawing& drawing, double scale, Ink ink) {
  if (!drawing.isTemplate) ink = Ink{};
  const auto useInk = [&](double alpha) {
    cairo_set_source_rgba(cairo, ink.red / 255.0, ink.green / 255.0, ink.blue / 255.0, alpha);
  };
  cairo_save(cairo);
  cairo_scale(cairo, scale, -scale);
  cairo_translate(cairo, 0, -drawing.size.height);
  for (const auto& arc : drawing.arcs) {
    useInk(arc.alpha);
    stroke(cairo, arc);
  }
  for (const auto& oval : drawing.ovals) {
    useInk(oval.alpha);
    fill(cairo, oval);
  }
  cairo_restore(cairo);
}

}  // namespace orvalle::platform::linuxos
