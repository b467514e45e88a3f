#include "platform/linux/drawing_cairo.h"

#include <gtest/gtest.h>

#include <vector>

namespace orvalle::platform::linuxos {
namespace {

/// A picture of 20 by 20 points, drawn at two pixels a point and read by points, y growing upwards.
class Picture {
 public:
  explicit Picture(const Drawing& drawing, Ink ink = {})
      : surface_(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, 40, 40)) {
    cairo_t* cairo = cairo_create(surface_);
    draw(cairo, drawing, 2, ink);
    cairo_destroy(cairo);
    cairo_surface_flush(surface_);
  }
  Picture(const Picture&) = delete;
  Picture& operator=(const Picture&) = delete;
  ~Picture() { cairo_surface_destroy(surface_); }

  /// Alpha, red, green and blue, premultiplied.
  std::uint32_t at(double x, double y) const {
    const auto row = static_cast<std::ptrdiff_t>((20 - y) * 2);
    const auto* pixels =
        cairo_image_surface_get_data(surface_) + row * cairo_image_surface_get_stride(surface_);
    return reinterpret_cast<const std::uint32_t*>(pixels)[static_cast<std::ptrdiff_t>(x * 2)];
  }
  int alpha(double x, double y) const { return static_cast<int>(at(x, y) >> 24); }

 private:
  cairo_surface_t* surface_;
};

Drawing drawing(const Arc& arc) {
  Drawing made;
  made.size = {20, 20};
  made.arcs = {arc};
  made.isTemplate = true;
  return made;
}

Arc arc(double start, double end, bool clockwise) {
  return {.centre = {10, 10},
          .radius = 6,
          .startDegrees = start,
          .endDegrees = end,
          .clockwise = clockwise,
          .lineWidth = 2};
}

// Points on the circle at half past one, half past four, half past seven and half past ten.
struct Quarters {
  bool upperRight, lowerRight, lowerLeft, upperLeft;
  bool operator==(const Quarters&) const = default;
};

Quarters quarters(const Picture& picture) {
  return {picture.alpha(14.25, 14.25) > 200, picture.alpha(14.25, 5.75) > 200,
          picture.alpha(5.75, 5.75) > 200, picture.alpha(5.75, 14.25) > 200};
}

TEST(DrawingOnCairo, goesRoundTheWayItIsTold) {
  EXPECT_EQ(quarters(Picture(drawing(arc(90, 0, true)))), (Quarters{true, false, false, false}));
  EXPECT_EQ(quarters(Picture(drawing(arc(90, 0, false)))), (Quarters{false, true, true, true}));
  EXPECT_EQ(quarters(Picture(drawing(arc(90, -180, true)))), (Quarters{true, true, true, false}));
  EXPECT_EQ(quarters(Picture(drawing(arc(90, -270, true)))), (Quarters{true, true, true, true}));
  EXPECT_EQ(quarters(Picture(drawing(arc(0, 360, false)))), (Quarters{true, true, true, true}));
}

TEST(DrawingOnCairo, strokesAsWideAsItIsTold) {
  const Picture picture(drawing(arc(0, 360, false)));
  EXPECT_EQ(picture.alpha(10, 10), 0);
  EXPECT_EQ(picture.alpha(10, 14.5), 0);
  EXPECT_GT(picture.alpha(10, 15.5), 200);
  EXPECT_GT(picture.alpha(10, 16.5), 200);
  EXPECT_EQ(picture.alpha(10, 18), 0);
}

TEST(DrawingOnCairo, endsRoundOrFlat) {
  auto half = arc(90, -90, true);
  EXPECT_EQ(Picture(drawing(half)).alpha(9, 16), 0);
  half.roundCaps = true;
  EXPECT_GT(Picture(drawing(half)).alpha(9.25, 16), 100);
  EXPECT_EQ(Picture(drawing(half)).alpha(8, 16), 0);
}

TEST(DrawingOnCairo, fillsOvals) {
  Drawing oval;
  oval.size = {20, 20};
  oval.ovals = {{{{2, 8}, {16, 4}}, 1}};
  const Picture picture(oval);
  EXPECT_EQ(picture.alpha(10, 10), 255);
  EXPECT_EQ(picture.alpha(4, 10), 255);
  EXPECT_EQ(picture.alpha(10, 13), 0);
  EXPECT_EQ(picture.alpha(2.5, 11.5), 0);
  oval.ovals[0].bounds.size.height = 0;
  EXPECT_EQ(Picture(oval).alpha(10, 8), 0);
}

TEST(DrawingOnCairo, keepsAlphasInTheInkOfTemplates) {
  Drawing oval;
  oval.size = {20, 20};
  oval.ovals = {{{{4, 4}, {12, 12}}, 0.2}};
  oval.isTemplate = true;
  EXPECT_EQ(Picture(oval, {255, 0, 0}).at(10, 10), 0x33330000U);
  oval.isTemplate = false;
  EXPECT_EQ(Picture(oval, {255, 0, 0}).at(10, 10), 0x33000000U);
}

}  // namespace
}  // namespace orvalle::platform::linuxos
