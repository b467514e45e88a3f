#include "base/point.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

namespace orvalle::base {

// How the test tool prints a point that differs.
void PrintTo(const Point& point, std::ostream* out) {
  *out << "(" << point.x << ", " << point.y << ")";
}

namespace {

class PointTest : public ::testing::Test {};

TEST_F(PointTest, writesPointsAsTextInBraces) {
  EXPECT_EQ(pointText({1230, 817}), "{1230, 817}");
  EXPECT_EQ(pointText({0, 0}), "{0, 0}");
  EXPECT_EQ(pointText({-1440, -0.5}), "{-1440, -0.5}");
  EXPECT_EQ(pointText({12.25, 0.1}), "{12.25, 0.1}");
  EXPECT_EQ(pointText({-0.0, -0.0}), "{0, 0}");
}

TEST_F(PointTest, readsBackExactlyWhatItWrote) {
  for (const double value : {0.1, 1.0 / 3, -2.5, 1e-300, 1e300, 123456789.123456789, 5e-324,
                             std::nextafter(817.0, 818.0), std::numeric_limits<double>::max()}) {
    const Point point{value, -value};
    EXPECT_EQ(pointFromText(pointText(point)), point) << pointText(point);
  }
}

TEST_F(PointTest, allowsBlanksAroundTheNumbers) {
  for (const std::string text : {"{3,4}", "{3, 4}", "{ 3 , 4 }", "{  3,  4  }", " {3, 4} "}) {
    EXPECT_EQ(pointFromText(text), (Point{3, 4})) << text;
  }
  EXPECT_EQ(pointFromText("{1e2, -2.5e-1}"), (Point{100, -0.25}));
}

TEST_F(PointTest, readsAnythingElseAsTheOrigin) {
  for (const std::string text :
       {"",          " ",         "{",        "}",          "{}",      "{,}",     "{3}",        "{3 4}",
        "{3, }",     "{, 4}",     "3, 4",     "{3, 4",      "3, 4}",   "(3, 4)",  "{3, 4} x",   "x {3, 4}",
        "{3, 4, 5}", "{3, 4x}",   "{x3, 4}",  "{3.5.1, 4}", "{3, 4}}", "{{3, 4}", "{1e400, 4}", "{inf, 4}",
        "{3, nan}",  "{0x10, 4}", "{3,5, 4}", "{3; 4}",     "punto"}) {
    EXPECT_EQ(pointFromText(text), Point()) << text;
  }
}

}  // namespace
}  // namespace orvalle::base
