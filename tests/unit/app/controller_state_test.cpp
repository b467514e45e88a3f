#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

#include "tests/unit/app/controller_fixture.h"

namespace orvalle::app {
namespace {

using namespace std::chrono_literals;

class ControllerStateTest : public ControllerFixture {
 protected:
  ControllerStateTest() {
    pairUp();
    launchWithPage();
  }
  link::Snapshot from(std::optional<std::string> origin) const {
    auto snapshot = session();
    snapshot.origin = std::move(origin);
    return snapshot;
  }
};

TEST_F(ControllerStateTest, isLiveByTheChannelOnlyWhileItIsConnected) {
  pushFromChannel(session());
  EXPECT_FALSE(controller->live());
  EXPECT_EQ(statusLine(), "Cerco il canale…");
  channel.channel->onConnection(true);
  EXPECT_TRUE(controller->live());
  EXPECT_EQ(statusLine(), "Tesi · 20′ al traguardo");
  channel.channel->onConnection(false);
  EXPECT_FALSE(controller->live());
  EXPECT_EQ(statusLine(), "Cerco il canale…");
}

TEST_F(ControllerStateTest, isLiveByThePageWithoutAChannel) {
  pushFromPage(session());
  EXPECT_TRUE(controller->live());
  EXPECT_EQ(statusLine(), "Tesi · 20′ al traguardo");
}

TEST_F(ControllerStateTest, staysLiveWithoutTheChannelOnceThePageHasSpoken) {
  goLive();
  pushFromPage(session());
  channel.channel->onConnection(false);
  EXPECT_TRUE(controller->live());
  // From then on a state from the channel counts too, whatever it says of its connection.
  system.time.advance(2min);
  EXPECT_FALSE(controller->live());
  pushFromChannel(session());
  EXPECT_TRUE(controller->live());
}

TEST_F(ControllerStateTest, countsEvenAStateOfThePageThatIsNotRunningAsSpoken) {
  auto stopped = session();
  stopped.running = false;
  pushFromPage(stopped);
  EXPECT_FALSE(controller->live());
  EXPECT_EQ(statusLine(), "Cerco il canale…");
  pushFromChannel(session());
  EXPECT_TRUE(controller->live());
}

TEST_F(ControllerStateTest, isNotLiveWhileNothingRuns) {
  goLive();
  auto stopped = session();
  stopped.running = false;
  pushFromChannel(stopped);
  EXPECT_FALSE(controller->live());
  EXPECT_EQ(statusLine(), "Nessuna sessione in corso");
  EXPECT_EQ(controller->rimanenteVivo(), 20);
}

TEST_F(ControllerStateTest, takesTheLatestStateWhole) {
  goLive();
  pushFromPage({true, true, 1, 4, 5, "", {}, {}});
  EXPECT_EQ(face().title, " 4:00 • Pausa");
  EXPECT_TRUE(taskTitles().empty());
  pushFromChannel(session(7));
  EXPECT_EQ(face().title, " 7:00 • Tesi");
  EXPECT_EQ(taskTitles().size(), 2u);
}

TEST_F(ControllerStateTest, trustsAStateForLessThan60Seconds) {
  goLive();
  system.time.advance(59s);
  EXPECT_TRUE(controller->live());
  system.time.advance(1s - 1ns);
  EXPECT_TRUE(controller->live());
  system.time.advance(1ns);
  EXPECT_FALSE(controller->live());
}

TEST_F(ControllerStateTest, trustsAnewWithEachState) {
  goLive();
  for (int i = 0; i < 5; ++i) {
    system.time.advance(59s);
    EXPECT_TRUE(controller->live());
    pushFromPage(session());
    EXPECT_EQ(controller->rimanenteVivo(), 20);
    system.time.advance(59s);
    pushFromChannel(session());
    EXPECT_EQ(controller->rimanenteVivo(), 20);
  }
}

TEST_F(ControllerStateTest, takesThePassingTimeOffWhileLive) {
  goLive(session(10));
  EXPECT_EQ(controller->rimanenteVivo(), 10);
  system.time.advance(30s);
  EXPECT_DOUBLE_EQ(controller->rimanenteVivo(), 9.5);
  system.time.advance(29s);
  EXPECT_NEAR(controller->rimanenteVivo(), 10 - 59.0 / 60, 1e-12);
  system.time.advance(1s);
  EXPECT_EQ(controller->rimanenteVivo(), 10) << "no longer live: as it was received";
  system.time.advance(24h);
  EXPECT_EQ(controller->rimanenteVivo(), 10);
}

TEST_F(ControllerStateTest, goesBelowZeroPastThePlannedEnd) {
  goLive(session(0.25));
  system.time.advance(30s);
  EXPECT_DOUBLE_EQ(controller->rimanenteVivo(), -0.25);
  EXPECT_EQ(face().title, " +0:15 • Tesi");
  EXPECT_EQ(panel().colour, platform::TextColour::SystemRed);
}

TEST_F(ControllerStateTest, takesNothingOffForAStateFromTheFuture) {
  goLive(session(10));
  system.time.jumpWallClock(-1h);
  EXPECT_TRUE(controller->live());
  EXPECT_EQ(controller->rimanenteVivo(), 10);
  system.time.advance(30s);
  EXPECT_EQ(controller->rimanenteVivo(), 10);
  EXPECT_TRUE(controller->live());
}

TEST_F(ControllerStateTest, measuresAgeByTheWallClock) {
  goLive();
  // The machine slept: the timers stood still, the clock did not.
  system.time.jumpWallClock(8h);
  EXPECT_FALSE(controller->live());
  system.time.advance(3s);
  EXPECT_EQ(face().title, " Orvalle");
  pushFromChannel(session());
  EXPECT_TRUE(controller->live());
}

TEST_F(ControllerStateTest, movesTheCountdownEachSecond) {
  goLive(session(24.25));
  EXPECT_EQ(face().title, " 24:15 • Tesi");
  system.time.advance(1s);
  EXPECT_EQ(face().title, " 24:14 • Tesi");
  EXPECT_EQ(panel().text, "24:14  •  Tesi");
  system.time.advance(1s);
  EXPECT_EQ(face().title, " 24:13 • Tesi");
  system.time.advance(30s);
  EXPECT_EQ(face().title, " 23:43 • Tesi");
  EXPECT_EQ(statusLine(), "Tesi · 24′ al traguardo");
}

TEST_F(ControllerStateTest, movesTheCountdownToItsLastTrustedSecond) {
  goLive(session(10));
  system.time.advance(59s);
  EXPECT_EQ(face().title, " 9:01 • Tesi");
}

TEST_F(ControllerStateTest, turnsIdleWithinThreeSecondsWhenStatesStopComing) {
  for (const auto moment : {0ms, 1ms, 999ms, 1000ms, 1500ms, 2000ms, 2999ms}) {
    launch();
    window().commit();
    system.time.advance(moment);
    goLive();
    system.time.advance(60s - 1ms);
    EXPECT_NE(face().title, " Orvalle") << moment.count();
    system.time.advance(3s + 1ms);
    EXPECT_EQ(face().title, " Orvalle") << moment.count();
    EXPECT_FALSE(panel().visible);
  }
}

TEST_F(ControllerStateTest, rendersEveryThreeSecondsWhileNotLive) {
  // Something changes that no event tells: it shows at the third second, not before.
  config.setUrl("");
  system.time.advance(3s - 1ms);
  EXPECT_EQ(statusLine(), "Cerco il canale…");
  system.time.advance(1ms);
  EXPECT_EQ(statusLine(), "Non abbinata: apri «Abbina…»");
  pairUp();
  system.time.advance(2999ms);
  EXPECT_EQ(statusLine(), "Non abbinata: apri «Abbina…»");
  system.time.advance(1ms);
  EXPECT_EQ(statusLine(), "Cerco il canale…");
}

TEST_F(ControllerStateTest, keepsTheAddressThatTheChannelBrings) {
  pushFromChannel(from("https://new.example/"));
  EXPECT_EQ(system.defaults.text("appUrl"), "https://new.example/");
  pushFromChannel(from("anything at all"));
  EXPECT_EQ(system.defaults.text("appUrl"), "anything at all");
}

TEST_F(ControllerStateTest, keepsTheAddressOfAStateThatIsNotRunningToo) {
  auto snapshot = from("https://new.example/");
  snapshot.running = false;
  pushFromChannel(snapshot);
  EXPECT_EQ(system.defaults.text("appUrl"), "https://new.example/");
}

TEST_F(ControllerStateTest, leavesTheAddressAsItWasWhenTheChannelBringsNone) {
  const auto before = system.defaults.writes;
  pushFromChannel(from(std::nullopt));
  pushFromChannel(from(""));
  EXPECT_EQ(system.defaults.text("appUrl"), std::nullopt);
  system.defaults.set("appUrl", "https://kept.example/");
  pushFromChannel(from(std::nullopt));
  pushFromChannel(from(""));
  EXPECT_EQ(system.defaults.text("appUrl"), "https://kept.example/");
  EXPECT_EQ(system.defaults.writes, before + 1);
}

TEST_F(ControllerStateTest, neverTakesAnAddressFromThePage) {
  const auto before = system.defaults.writes;
  pushFromPage(from("https://evil.example/"));
  EXPECT_TRUE(controller->live());
  EXPECT_EQ(system.defaults.text("appUrl"), std::nullopt);
  EXPECT_EQ(system.defaults.writes, before);
}

TEST_F(ControllerStateTest, doesNotMoveTheWindowWhenTheAddressChanges) {
  pushFromChannel(from("https://new.example/"));
  system.time.advance(1min);
  EXPECT_EQ(window().loads, Texts{"https://app.example/"});
}

}  // namespace
}  // namespace orvalle::app
