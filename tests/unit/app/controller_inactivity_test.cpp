#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <utility>

#include "tests/unit/app/controller_fixture.h"

namespace orvalle::app {
namespace {

using namespace std::chrono_literals;

class ControllerInactivityTest : public ControllerFixture {
 protected:
  ControllerInactivityTest() {
    launchWithPage();
    goLive();
    idleSeconds = 1000;
  }
  static std::string inactive(const std::string& seconds) {
    return commandScript("inattivo", "'" + seconds + "'");
  }
};

TEST_F(ControllerInactivityTest, isToldToThePageEvery30Seconds) {
  system.time.advance(30s - 1ns);
  EXPECT_TRUE(window().scripts.empty());
  system.time.advance(1ns);
  EXPECT_EQ(window().scripts, Texts{inactive("1000")});
  idleSeconds = 1030;
  system.time.advance(30s);
  EXPECT_EQ(window().scripts, (Texts{inactive("1000"), inactive("1030")}));
  system.time.advance(5min);
  EXPECT_EQ(window().scripts.size(), 12u);
}

TEST_F(ControllerInactivityTest, beginsAtTheThreshold) {
  idleSeconds = 299.999;
  system.time.advance(30s);
  EXPECT_TRUE(window().scripts.empty());
  idleSeconds = 300;
  system.time.advance(30s);
  EXPECT_EQ(window().scripts, Texts{inactive("300")});
  idleSeconds = 2;
  system.time.advance(5min);
  EXPECT_EQ(window().scripts.size(), 1u);
}

TEST_F(ControllerInactivityTest, takesTheThresholdItIsGiven) {
  neighbours.sogliaSecondi = 7.5;
  launchWithPage();
  goLive();
  idleSeconds = 7.4;
  system.time.advance(30s);
  EXPECT_TRUE(window().scripts.empty());
  idleSeconds = 7.5;
  system.time.advance(30s);
  EXPECT_EQ(window().scripts, Texts{inactive("7")});
}

TEST_F(ControllerInactivityTest, isToldInWholeSecondsTruncated) {
  for (const auto& [idle, text] : {std::pair{300.999, "300"}, std::pair{86399.5, "86399"},
                                   std::pair{1e6, "1000000"}, std::pair{123456789012.7, "123456789012"}}) {
    window().scripts.clear();
    idleSeconds = idle;
    system.time.advance(30s);
    EXPECT_EQ(window().scripts, Texts{inactive(text)});
  }
}

TEST_F(ControllerInactivityTest, isNotToldWhileNothingRuns) {
  auto stopped = session();
  stopped.running = false;
  pushFromChannel(stopped);
  system.time.advance(5min);
  EXPECT_TRUE(window().scripts.empty());
}

TEST_F(ControllerInactivityTest, isToldForARunningSessionThatIsNoLongerLive) {
  channel.channel->onConnection(false);
  system.time.advance(10min);
  EXPECT_FALSE(controller->live());
  EXPECT_EQ(window().scripts.size(), 20u);
}

TEST_F(ControllerInactivityTest, isNeverToldOverTheChannel) {
  window().fail("niente rete");
  window().scripts.clear();
  system.time.advance(5min);
  EXPECT_TRUE(window().scripts.empty());
  EXPECT_TRUE(channel.commands.empty());
}

TEST_F(ControllerInactivityTest, neverShowsTheWindow) {
  system.journal.clear();
  system.time.advance(5min);
  EXPECT_TRUE(system.journal.empty());
}

TEST_F(ControllerInactivityTest, isNotKnownWhereNobodyMeasuresIt) {
  neighbours.fermoDa = nullptr;
  launchWithPage();
  goLive();
  system.time.advance(5min);
  EXPECT_TRUE(window().scripts.empty());
}

}  // namespace
}  // namespace orvalle::app
