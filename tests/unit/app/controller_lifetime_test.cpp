#include <gtest/gtest.h>

#include <chrono>
#include <functional>

#include "tests/unit/app/controller_fixture.h"

namespace orvalle::app {
namespace {

class ControllerLifetimeTest : public ControllerFixture {};

TEST_F(ControllerLifetimeTest, closesTheDiaryWhenTheProgramEndsAndDoesNothingElse) {
  launchWithPage();
  goLive();
  system.journal.clear();
  window().scripts.clear();
  const auto writes = system.defaults.writes;
  controller->applicationWillTerminate();
  EXPECT_EQ(system.journal, Texts{"attività ferma"});
  EXPECT_TRUE(window().scripts.empty());
  EXPECT_TRUE(channel.commands.empty());
  EXPECT_EQ(system.defaults.writes, writes);
}

TEST_F(ControllerLifetimeTest, goesOnWhenTheLastWindowCloses) {
  launch();
  EXPECT_FALSE(controller->applicationShouldTerminateAfterLastWindowClosed());
}

TEST_F(ControllerLifetimeTest, showsTheWindowWhenStartedAgainWithoutOne) {
  launchWithPage();
  system.journal.clear();
  EXPECT_TRUE(controller->applicationShouldHandleReopen(false));
  EXPECT_EQ(system.journal, (Texts{"activate", "web window in front"}));
  EXPECT_EQ(window().scripts, Texts{"window.dispatchEvent(new Event('focus'))"});
  EXPECT_EQ(window().loads.size(), 1u);
}

TEST_F(ControllerLifetimeTest, doesNothingWhenStartedAgainWithAWindow) {
  launchWithPage();
  system.journal.clear();
  EXPECT_TRUE(controller->applicationShouldHandleReopen(true));
  EXPECT_TRUE(system.journal.empty());
  EXPECT_TRUE(window().scripts.empty());
}

TEST_F(ControllerLifetimeTest, takesEverythingItMadeWithIt) {
  launchWithPage();
  goLive();
  controller.reset();
  EXPECT_EQ(system.time.timerCount(), 0u);
  EXPECT_FALSE(system.statusBar.state.itemShown);
  EXPECT_EQ(system.panels.made.at(0), nullptr);
  EXPECT_EQ(system.webWindows.made.at(0), nullptr);
  EXPECT_EQ(channel.channel, nullptr);
  EXPECT_EQ(pairing, nullptr);
  system.time.advance(std::chrono::minutes(5));
}

TEST_F(ControllerLifetimeTest, hearsNothingAfterItsEnd) {
  pairUp();
  launch();
  // What a channel may still hold when its news arrives late.
  const auto onState = channel.channel->onState;
  const auto onConnection = channel.channel->onConnection;
  const auto onSaved = pairing->onSaved;
  const auto connects = channel.connects;
  const auto faces = system.statusBar.state.faceChanges;
  controller.reset();
  auto snapshot = session();
  snapshot.origin = "https://late.example/";
  onConnection(true);
  onState(snapshot);
  onSaved();
  EXPECT_EQ(system.defaults.text("appUrl"), std::nullopt);
  EXPECT_EQ(system.statusBar.state.faceChanges, faces);
  EXPECT_EQ(channel.connects, connects);
}

TEST_F(ControllerLifetimeTest, hearsNothingFromAChannelThatGoesWithIt) {
  // A channel that reports its own end: the controller is half gone by then.
  class Talkative : public FakeChannel {
   public:
    using FakeChannel::FakeChannel;
    ~Talkative() override { onConnection(false); }
  };
  neighbours.makeChannel = [this] { return std::make_unique<Talkative>(channel, system.journal); };
  launch();
  goLive();
  const auto faces = system.statusBar.state.faceChanges;
  controller.reset();
  EXPECT_EQ(system.statusBar.state.faceChanges, faces);
}

TEST_F(ControllerLifetimeTest, leavesMenusThatOutliveItAlone) {
  launch();
  goLive();
  const auto statusMenu = system.statusBar.state.menu;
  const auto bar = system.mainMenu.bar;
  controller.reset();
  EXPECT_EQ(statusMenu->items().size(), 16u);
  EXPECT_EQ(bar->items().size(), 6u);
}

}  // namespace
}  // namespace orvalle::app
