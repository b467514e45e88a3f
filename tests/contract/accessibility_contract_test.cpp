#include <gtest/gtest.h>

#include "tests/contract/accessibility_rigs.h"

namespace orvalle::platform {
namespace {

template <typename Rig>
class AccessibilityContract : public ::testing::Test {
 protected:
  Accessibility& access() { return rig.accessibility(); }
  Rig rig;
};

using Rigs = ::testing::Types<contract::MemoryAccessibilityRig, contract::NativeAccessibilityRig>;
TYPED_TEST_SUITE(AccessibilityContract, Rigs);

TYPED_TEST(AccessibilityContract, isNotThereBeforeTheUserGaveIt) {
  EXPECT_FALSE(this->access().trusted());
  EXPECT_FALSE(this->rig.asking());
}

TYPED_TEST(AccessibilityContract, isGivenByTheAnswer) {
  this->access().prompt();
  EXPECT_FALSE(this->access().trusted());
  EXPECT_TRUE(this->rig.asking());
  this->rig.answer(true);
  EXPECT_TRUE(this->access().trusted());
  EXPECT_FALSE(this->rig.asking());
}

TYPED_TEST(AccessibilityContract, isRefusedByTheAnswerAndAskedForAgain) {
  this->access().prompt();
  this->rig.answer(false);
  EXPECT_FALSE(this->access().trusted());
  this->access().prompt();
  EXPECT_TRUE(this->rig.asking());
  this->rig.answer(true);
  EXPECT_TRUE(this->access().trusted());
}

TYPED_TEST(AccessibilityContract, isNotAskedForWhereItIsThere) {
  this->access().prompt();
  this->rig.answer(true);
  this->access().prompt();
  EXPECT_FALSE(this->rig.asking());
}

TYPED_TEST(AccessibilityContract, isAskedForOnceWhileTheQuestionIsOpen) {
  this->access().prompt();
  this->access().prompt();
  EXPECT_TRUE(this->rig.asking());
  this->rig.answer(false);
  EXPECT_FALSE(this->rig.asking());
}

TYPED_TEST(AccessibilityContract, showsItsSettingsAtOnceWhereNothingIsAsked) {
  this->access().openSettings();
  EXPECT_EQ(this->rig.settingsShown(), 1);
}

TYPED_TEST(AccessibilityContract, showsItsSettingsAfterTheAnswer) {
  for (const bool answer : {false, true}) {
    this->access().prompt();
    this->access().openSettings();
    EXPECT_TRUE(this->rig.asking());
    if (!answer) {
      EXPECT_EQ(this->rig.settingsShown(), 0);
    }
    this->rig.answer(answer);
    EXPECT_EQ(this->rig.settingsShown(), 1);
  }
}

TYPED_TEST(AccessibilityContract, showsNoSettingsAfterAnAnswerThatNobodyAskedToShowThemFor) {
  this->access().prompt();
  EXPECT_TRUE(this->rig.asking());
  this->rig.answer(true);
  EXPECT_EQ(this->rig.settingsShown(), 0);
}

}  // namespace
}  // namespace orvalle::platform
