#include "app/ring_image.h"

#include <gtest/gtest.h>

#include <limits>

namespace orvalle::app {
namespace {

using platform::Arc;
using platform::Drawing;
using platform::Oval;

const Arc kTrack{{8, 8}, 6, 0, 360, false, 1.4, false, 0.3};
const Oval kDot{{{6, 6}, {4, 4}}, 1};

Arc progressTo(double endDegrees) {
  return {{8, 8}, 6, 90, endDegrees, true, 2.2, true, 1};
}

class RingImageTest : public ::testing::Test {};

TEST_F(RingImageTest, isASmallTemplate) {
  const auto image = ringImage(0.5, false);
  EXPECT_EQ(image.size, (base::Size{16, 16}));
  EXPECT_TRUE(image.isTemplate);
}

TEST_F(RingImageTest, isAnEmptyTrackToBeginWith) {
  EXPECT_EQ(ringImage(0, false), (Drawing{{16, 16}, {kTrack}, {}, true}));
}

TEST_F(RingImageTest, fillsClockwiseFromTwelveOClock) {
  EXPECT_EQ(ringImage(0.5, false), (Drawing{{16, 16}, {kTrack, progressTo(-90)}, {}, true}));
  EXPECT_EQ(ringImage(0.25, false), (Drawing{{16, 16}, {kTrack, progressTo(0)}, {}, true}));
  EXPECT_EQ(ringImage(0.75, false), (Drawing{{16, 16}, {kTrack, progressTo(-180)}, {}, true}));
}

TEST_F(RingImageTest, drawsNoArcForTooLittle) {
  for (const double progress :
       {0.001, 0.0005, 0.0, -0.0, -0.5, -5.0, -std::numeric_limits<double>::infinity(),
        std::numeric_limits<double>::quiet_NaN()}) {
    EXPECT_EQ(ringImage(progress, false).arcs, std::vector<Arc>{kTrack}) << progress;
  }
  EXPECT_EQ(ringImage(0.0011, false).arcs, (std::vector<Arc>{kTrack, progressTo(90 - 360 * 0.0011)}));
}

TEST_F(RingImageTest, drawsTheFullCircleFromOneOn) {
  for (const double progress : {1.0, 1.0000001, 1.7, 1e300, std::numeric_limits<double>::infinity()}) {
    EXPECT_EQ(ringImage(progress, false).arcs, (std::vector<Arc>{kTrack, progressTo(-270)})) << progress;
  }
}

TEST_F(RingImageTest, marksOverTimeWithADot) {
  EXPECT_EQ(ringImage(1.7, true), (Drawing{{16, 16}, {kTrack, progressTo(-270)}, {kDot}, true}));
  EXPECT_EQ(ringImage(0, true), (Drawing{{16, 16}, {kTrack}, {kDot}, true}));
}

}  // namespace
}  // namespace orvalle::app
