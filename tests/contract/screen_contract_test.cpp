#include <gtest/gtest.h>

#include "tests/contract/screen_rigs.h"

namespace orvalle::contract {
namespace {

template <typename Rig>
class ScreenContract : public ::testing::Test {
 protected:
  Rig rig;
};

using Rigs = ::testing::Types<MemoryScreenRig, NativeScreenRig>;
TYPED_TEST_SUITE(ScreenContract, Rigs);

TYPED_TEST(ScreenContract, usableRoomLiesOnTheScreen) {
  const auto whole = this->rig.whole();
  const auto usable = this->rig.screen().mainVisibleFrame();
  ASSERT_EQ(usable.has_value(), whole.has_value());
  if (!whole) GTEST_SKIP() << "no screen";
  EXPECT_GT(usable->size.width, whole->size.width / 2);
  EXPECT_GT(usable->size.height, whole->size.height / 2);
  EXPECT_GE(usable->origin.x, whole->origin.x);
  EXPECT_GE(usable->origin.y, whole->origin.y);
  EXPECT_LE(usable->origin.x + usable->size.width, whole->origin.x + whole->size.width);
  EXPECT_LE(usable->origin.y + usable->size.height, whole->origin.y + whole->size.height);
}

}  // namespace
}  // namespace orvalle::contract
