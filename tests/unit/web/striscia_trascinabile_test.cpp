#include "web/striscia_trascinabile.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace orvalle::web {
namespace {

class FakeStrip : public platform::TitleStrip {
 public:
  void performWindowDrag() override { done += "drag "; }
  void miniaturize() override { done += "miniaturize "; }
  void zoom() override { done += "zoom "; }
  std::optional<std::string> doubleClickAction() const override { return action; }
  std::string done;
  std::optional<std::string> action;
};

class StrisciaTrascinabileTest : public ::testing::Test {
 protected:
  std::string pressing(int clickCount) {
    strip.done.clear();
    strip.onMouseDown(clickCount);
    return strip.done;
  }

  FakeStrip strip;
  std::optional<StrisciaTrascinabile> striscia{std::in_place, strip};
};

TEST_F(StrisciaTrascinabileTest, is38PointsHigh) {
  EXPECT_EQ(StrisciaTrascinabile::altezza, 38);
}

TEST_F(StrisciaTrascinabileTest, dragsTheWindowForAnyNumberOfClicksButTwo) {
  for (const int count : {0, 1, 3, 4, 5, 6, 12, 22}) EXPECT_EQ(pressing(count), "drag ") << count;
}

TEST_F(StrisciaTrascinabileTest, doesAtADoubleClickWhatTheUserHasSet) {
  struct Row {
    std::optional<std::string> action;
    std::string done;
  };
  for (const auto& row :
       {Row{"Minimize", "miniaturize "}, Row{"None", ""}, Row{{}, "zoom "}, Row{"", "zoom "},
        Row{"Maximize", "zoom "}, Row{"Fill", "zoom "}, Row{"minimize", "zoom "}, Row{"none", "zoom "},
        Row{"NONE", "zoom "}, Row{"Minimize ", "zoom "}}) {
    strip.action = row.action;
    EXPECT_EQ(pressing(2), row.done) << row.action.value_or("nothing set");
  }
}

TEST_F(StrisciaTrascinabileTest, readsTheSettingAtEachDoubleClick) {
  strip.action = "None";
  EXPECT_EQ(pressing(2), "");
  strip.action = "Minimize";
  EXPECT_EQ(pressing(2), "miniaturize ");
}

TEST_F(StrisciaTrascinabileTest, doesNotLookAtTheSettingForOtherClicks) {
  strip.action = "Minimize";
  EXPECT_EQ(pressing(1), "drag ");
  EXPECT_EQ(pressing(3), "drag ");
}

TEST_F(StrisciaTrascinabileTest, letsGoOfTheStripWhenItGoes) {
  striscia.reset();
  EXPECT_FALSE(strip.onMouseDown);
}

}  // namespace
}  // namespace orvalle::web
