#include "app/overlay.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/memory/memory_platform.h"

namespace orvalle::app {
namespace {

constexpr char kKey[] = "overlayOrigin";

class OverlayTest : public ::testing::Test {
 protected:
  void make() { overlay.emplace(platform); }
  platform::memory::PanelState& panel() { return *system.panels.made.back(); }

  platform::memory::MemoryPlatform system;
  platform::Platform platform = system.platform();
  std::optional<Overlay> overlay;
};

TEST_F(OverlayTest, buildsItsPanelAsAgreedAndHidden) {
  make();
  EXPECT_EQ(panel().spec.contentSize, (base::Size{190, 38}));
  EXPECT_EQ(panel().spec.cornerRadius, 12);
  EXPECT_EQ(panel().spec.labelFrame, (base::Rect{{12, 9}, {166, 20}}));
  EXPECT_EQ(panel().spec.labelFontSize, 13);
  EXPECT_EQ(panel().text, "");
  EXPECT_EQ(panel().colour, platform::TextColour::White);
  EXPECT_FALSE(panel().visible);
  EXPECT_EQ(system.panels.made.size(), 1u);
}

TEST_F(OverlayTest, beginsNearTheTopRightCornerOfTheUsableScreen) {
  system.screen.visibleFrame = base::Rect{{0, 0}, {1440, 875}};
  make();
  EXPECT_EQ(panel().origin, (base::Point{1230, 817}));
}

TEST_F(OverlayTest, countsWhereTheUsableScreenBegins) {
  system.screen.visibleFrame = base::Rect{{-1920, 40}, {1920, 1000.5}};
  make();
  EXPECT_EQ(panel().origin, (base::Point{-210, 982.5}));
}

TEST_F(OverlayTest, staysWhereItWasMadeWithoutAScreen) {
  system.screen.visibleFrame = std::nullopt;
  make();
  EXPECT_EQ(panel().origin, (base::Point{0, 0}));
}

TEST_F(OverlayTest, beginsAtItsRememberedPlaceEvenOffEveryScreen) {
  system.defaults.set(kKey, "{-5000, 9000.5}");
  make();
  EXPECT_EQ(panel().origin, (base::Point{-5000, 9000.5}));
  system.screen.visibleFrame = std::nullopt;
  make();
  EXPECT_EQ(panel().origin, (base::Point{-5000, 9000.5}));
}

TEST_F(OverlayTest, takesARememberedPlaceThatDoesNotReadAsTheCorner) {
  for (const std::string text : {"", "qui", "{1, }"}) {
    system.defaults.set(kKey, text);
    make();
    EXPECT_EQ(panel().origin, (base::Point{0, 0})) << text;
  }
}

TEST_F(OverlayTest, ignoresARememberedValueThatIsNoText) {
  system.defaults.set(kKey, std::int64_t{5});
  make();
  EXPECT_EQ(panel().origin, (base::Point{1230, 817}));
}

TEST_F(OverlayTest, remembersNoPlaceByItself) {
  make();
  overlay->update("24:13", false);
  overlay->show(true);
  EXPECT_EQ(system.defaults.value(kKey), std::nullopt);
  EXPECT_EQ(system.defaults.writes, 0);
}

TEST_F(OverlayTest, remembersEachPlaceItIsDraggedTo) {
  make();
  panel().drag({100, 200});
  EXPECT_EQ(system.defaults.text(kKey), "{100, 200}");
  panel().drag({-3, 0.5});
  EXPECT_EQ(system.defaults.text(kKey), "{-3, 0.5}");
  EXPECT_EQ(system.defaults.writes, 2);
}

TEST_F(OverlayTest, comesBackWhereItWasDraggedTo) {
  make();
  panel().drag({321.25, -7});
  make();
  EXPECT_EQ(panel().origin, (base::Point{321.25, -7}));
}

TEST_F(OverlayTest, showsTheTextInWhiteOrPastTheEndInRed) {
  make();
  overlay->update("24:13  •  Focus", false);
  EXPECT_EQ(panel().text, "24:13  •  Focus");
  EXPECT_EQ(panel().colour, platform::TextColour::White);
  overlay->update("+0:24  •  Focus", true);
  EXPECT_EQ(panel().text, "+0:24  •  Focus");
  EXPECT_EQ(panel().colour, platform::TextColour::SystemRed);
  overlay->update("1:00", false);
  EXPECT_EQ(panel().colour, platform::TextColour::White);
}

TEST_F(OverlayTest, comesAndGoes) {
  make();
  overlay->show(true);
  EXPECT_TRUE(panel().visible);
  overlay->show(true);
  EXPECT_TRUE(panel().visible);
  overlay->show(false);
  EXPECT_FALSE(panel().visible);
}

TEST_F(OverlayTest, takesItsPanelWithIt) {
  make();
  overlay.reset();
  EXPECT_EQ(system.panels.made, (std::vector<platform::memory::PanelState*>{nullptr}));
}

/// Keeps what a panel was told to call, as a system does whose events arrive late.
class LatePanel : public platform::Panel {
 public:
  explicit LatePanel(std::function<void()>& kept) : kept_(kept) {}
  ~LatePanel() override { kept_ = onDidMove; }
  void setFrameOrigin(base::Point) override {}
  base::Point frameOrigin() const override { return {}; }
  void setLabel(const std::string&, platform::TextColour) override {}
  void orderFrontRegardless() override {}
  void orderOut() override {}

 private:
  std::function<void()>& kept_;
};

class LatePanels : public platform::Panels {
 public:
  bool canFloat() const override { return true; }
  std::unique_ptr<platform::Panel> make(const platform::PanelSpec&) override {
    return std::make_unique<LatePanel>(kept);
  }
  std::function<void()> kept;
};

TEST_F(OverlayTest, doesNothingForAMoveThatComesAfterItsEnd) {
  LatePanels panels;
  const auto late = system.platform({.panels = &panels});
  std::make_unique<Overlay>(late).reset();
  ASSERT_TRUE(panels.kept);
  panels.kept();
  EXPECT_EQ(system.defaults.writes, 0);
}

}  // namespace
}  // namespace orvalle::app
