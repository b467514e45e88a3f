#include <gtest/gtest.h>

#include "tests/contract/frontmost_rigs.h"

namespace orvalle::platform {
namespace {

template <typename Rig>
class FrontmostContract : public ::testing::Test {
 protected:
  std::optional<std::string> name() { return rig.frontmost().applicationName(); }
  std::optional<std::string> title() { return rig.frontmost().focusedWindowTitle(); }
  Rig rig;
};

using Rigs = ::testing::Types<contract::MemoryFrontmostRig, contract::X11FrontmostRig>;
TYPED_TEST_SUITE(FrontmostContract, Rigs);

TYPED_TEST(FrontmostContract, tellsTheApplicationInFrontAndItsTitle) {
  this->rig.use("Quaderno", "lettera.txt – Città €");
  EXPECT_EQ(this->name(), "Quaderno");
  EXPECT_EQ(this->title(), "lettera.txt – Città €");
}

TYPED_TEST(FrontmostContract, followsTheUserToAnotherApplication) {
  this->rig.use("Quaderno", "a");
  EXPECT_EQ(this->name(), "Quaderno");
  this->rig.use("Disegno", "b");
  EXPECT_EQ(this->name(), "Disegno");
  EXPECT_EQ(this->title(), "b");
}

TYPED_TEST(FrontmostContract, hasNoTitleWhereItIsEmpty) {
  this->rig.use("Quaderno", "");
  EXPECT_EQ(this->name(), "Quaderno");
  EXPECT_EQ(this->title(), std::nullopt);
}

TYPED_TEST(FrontmostContract, hasNothingWhereNothingIsInFront) {
  this->rig.use("Quaderno", "a");
  EXPECT_EQ(this->name(), "Quaderno");
  this->rig.leave();
  EXPECT_EQ(this->name(), std::nullopt);
  EXPECT_EQ(this->title(), std::nullopt);
}

}  // namespace
}  // namespace orvalle::platform
