#include <gtest/gtest.h>

#include "tests/contract/pair_view_rigs.h"

/// What every pairing window does, whatever draws it.
namespace orvalle::contract {
namespace {

using platform::MessageColour;

template <typename Rig>
class PairViewContract : public ::testing::Test {
 protected:
  Rig rig;
  std::unique_ptr<platform::PairView> view = rig.make();
};

using PairRigs = ::testing::Types<MemoryPairRig, NativePairRig>;
TYPED_TEST_SUITE(PairViewContract, PairRigs);

TYPED_TEST(PairViewContract, isMadeHiddenAndEmpty) {
  this->rig.settle();
  EXPECT_FALSE(this->rig.visible());
  for (std::size_t field = 0; field < 3; ++field) EXPECT_EQ(this->view->fieldText(field), "");
  EXPECT_EQ(this->rig.message(), "");
}

TYPED_TEST(PairViewContract, keepsEachFieldsText) {
  this->view->setFieldText(0, "https://città.example/→");
  this->view->setFieldText(1, "");
  this->view->setFieldText(2, "  both ends ");
  this->rig.type(1, "typed");
  EXPECT_EQ(this->view->fieldText(0), "https://città.example/→");
  EXPECT_EQ(this->view->fieldText(1), "typed");
  EXPECT_EQ(this->view->fieldText(2), "  both ends ");
  this->view->setFieldText(0, "");
  EXPECT_EQ(this->view->fieldText(0), "");
}

TYPED_TEST(PairViewContract, showsTheLastMessage) {
  this->view->setMessage("Trovati tutti e tre. Controlla e salva.", MessageColour::SystemGreen);
  EXPECT_EQ(this->rig.message(), "Trovati tutti e tre. Controlla e salva.");
  this->view->setMessage("<b>&amp;", MessageColour::SystemOrange);
  EXPECT_EQ(this->rig.message(), "<b>&amp;");
  this->view->setMessage("", MessageColour::Label);
  EXPECT_EQ(this->rig.message(), "");
}

TYPED_TEST(PairViewContract, comesAndGoes) {
  this->view->setFieldText(0, "kept");
  for (int i = 0; i < 2; ++i) {
    this->view->present();
    this->rig.settle();
    EXPECT_TRUE(this->rig.visible());
    this->view->present();
    this->rig.settle();
    EXPECT_TRUE(this->rig.visible());
    this->view->orderOut();
    this->rig.settle();
    EXPECT_FALSE(this->rig.visible());
  }
  this->view->orderOut();
  EXPECT_EQ(this->view->fieldText(0), "kept");
}

TYPED_TEST(PairViewContract, tellsWhichButtonIsPressed) {
  std::vector<std::size_t> pressed;
  this->view->onButton = [&](std::size_t button) { pressed.push_back(button); };
  this->view->present();
  this->rig.settle();
  EXPECT_TRUE(pressed.empty());
  this->rig.press(1);
  this->rig.press(0);
  this->rig.press(1);
  EXPECT_EQ(pressed, (std::vector<std::size_t>{1, 0, 1}));
}

TYPED_TEST(PairViewContract, needsNobodyToTell) {
  this->rig.press(0);
}

TYPED_TEST(PairViewContract, mayGoAwayWhenAButtonIsPressed) {
  int pressed = 0;
  this->view->onButton = [&](std::size_t) {
    ++pressed;
    this->view.reset();
  };
  this->view->present();
  this->rig.settle();
  this->rig.press(1);
  this->rig.settle();
  EXPECT_EQ(pressed, 1);
}

}  // namespace
}  // namespace orvalle::contract
