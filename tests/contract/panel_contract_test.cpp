#include "platform/panel.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "tests/contract/panel_rigs.h"

namespace orvalle::contract {
namespace {

using base::Point;
using platform::TextColour;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

template <typename Rig>
class PanelContract : public ::testing::Test {
 protected:
  PanelContract() : panel(rig.panels().make(panelSpec())) {
    panel->onDidMove = [this] { moves.push_back(panel->frameOrigin()); };
  }

  Rig rig;
  std::vector<Point> moves;
  std::unique_ptr<platform::Panel> panel;
};

using Rigs = ::testing::Types<MemoryPanelRig, NativePanelRig>;
TYPED_TEST_SUITE(PanelContract, Rigs);

TYPED_TEST(PanelContract, isMadeHiddenAtTheOrigin) {
  EXPECT_FALSE(this->rig.visible());
  EXPECT_EQ(this->panel->frameOrigin(), (Point{0, 0}));
}

TYPED_TEST(PanelContract, floatsOnTheDesktopsOfTheseTests) {
  EXPECT_TRUE(this->rig.panels().canFloat());
}

TYPED_TEST(PanelContract, comesAndGoes) {
  this->panel->setFrameOrigin({100, 100});
  this->moves.clear();
  for (const bool shown : {true, true, false, false, true}) {
    shown ? this->panel->orderFrontRegardless() : this->panel->orderOut();
    EXPECT_TRUE(runUntil([&] { return this->rig.visible() == shown; }));
    this->rig.settle();
    EXPECT_EQ(this->rig.visible(), shown);
  }
  EXPECT_EQ(this->panel->frameOrigin(), (Point{100, 100}));
  EXPECT_THAT(this->moves, IsEmpty());
}

TYPED_TEST(PanelContract, keepsThePlaceItIsGiven) {
  for (const bool shown : {false, true}) {
    if (shown) this->panel->orderFrontRegardless();
    for (const Point place : {Point{300, 200}, Point{12.5, 30.25}, Point{-100, -20}, Point{3000, 2000}}) {
      this->panel->setFrameOrigin(place);
      EXPECT_EQ(this->panel->frameOrigin(), place);
      this->rig.settle();
      EXPECT_EQ(this->panel->frameOrigin(), place);
    }
  }
}

TYPED_TEST(PanelContract, tellsEachMoveOnce) {
  this->panel->setFrameOrigin({0, 0});
  this->panel->setFrameOrigin({300, 200});
  this->panel->setFrameOrigin({300, 200});
  EXPECT_THAT(this->moves, ElementsAre(Point{300, 200}));
  this->panel->orderFrontRegardless();
  this->rig.settle();
  this->panel->setFrameOrigin({310, 200});
  EXPECT_THAT(this->moves, ElementsAre(Point{300, 200}, Point{310, 200}));
  this->rig.settle();
  EXPECT_THAT(this->moves, ElementsAre(Point{300, 200}, Point{310, 200}));
}

TYPED_TEST(PanelContract, isDraggedByTheUser) {
  this->panel->setFrameOrigin({300, 300});
  this->panel->orderFrontRegardless();
  this->rig.settle();
  this->moves.clear();
  this->rig.drag({120, -40});
  EXPECT_TRUE(runUntil([&] { return !this->moves.empty(); }));
  this->rig.settle();
  EXPECT_THAT(this->moves, ElementsAre(Point{420, 260}));
  EXPECT_TRUE(this->rig.visible());
}

TYPED_TEST(PanelContract, showsItsLabel) {
  this->panel->setLabel("24:13  •  <b>R&D</b> _x_", TextColour::White);
  EXPECT_EQ(this->rig.text(), "24:13  •  <b>R&D</b> _x_");
  EXPECT_FALSE(this->rig.red());
  this->panel->setLabel("+0:01  •  Focus", TextColour::SystemRed);
  EXPECT_EQ(this->rig.text(), "+0:01  •  Focus");
  EXPECT_TRUE(this->rig.red());
  this->panel->setLabel("+0:01  •  Focus", TextColour::White);
  EXPECT_FALSE(this->rig.red());
}

}  // namespace
}  // namespace orvalle::contract
