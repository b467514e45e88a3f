#include <gtest/gtest.h>

#include <chrono>

#include "tests/unit/app/controller_fixture.h"

namespace orvalle::app {
namespace {

using namespace std::chrono_literals;

/// Sleep and the locked screen.
class ControllerSessionTest : public ControllerFixture {
 protected:
  ControllerSessionTest() {
    neighbours.sospendiAttivita = [this] { diary.push_back("sospesa"); };
    neighbours.riprendiAttivita = [this] { diary.push_back("ripresa"); };
    pairUp();
    launchWithPage();
  }
  platform::SessionDelegate& told() { return *system.sessionWatch.delegate; }

  Texts diary;
};

TEST_F(ControllerSessionTest, countdownOfBeforeTheSleepIsNotShownAfterIt) {
  goLive();
  told().willSleep();
  // The wall clock goes on while the machine sleeps, its timers do not.
  system.time.jumpWallClock(8h);
  EXPECT_NE(face().title, " Orvalle") << "nothing has looked yet";
  told().didWake();
  EXPECT_EQ(face().title, " Orvalle");
  EXPECT_FALSE(panel().visible);
}

TEST_F(ControllerSessionTest, shortSleepIsTakenOffTheRemainingTimeAtOnce) {
  goLive(session(20));
  system.time.jumpWallClock(30s);
  told().didWake();
  EXPECT_EQ(face().title, " 19:30 • Tesi");
}

TEST_F(ControllerSessionTest, channelIsConnectedAnewAtOnceAfterASleep) {
  const int before = channel.connects;
  told().willSleep();
  EXPECT_EQ(channel.connects, before);
  told().didWake();
  EXPECT_EQ(channel.connects, before + 1);
}

TEST_F(ControllerSessionTest, unpairedProgramConnectsNothing) {
  config.setChannelKey("");
  const int before = channel.connects;
  told().didWake();
  EXPECT_EQ(channel.connects, before);
}

TEST_F(ControllerSessionTest, diaryStandsStillWhileTheMachineSleeps) {
  told().willSleep();
  EXPECT_EQ(diary, Texts{"sospesa"});
  told().didWake();
  EXPECT_EQ(diary, (Texts{"sospesa", "ripresa"}));
}

TEST_F(ControllerSessionTest, diaryStandsStillUntilTheScreenIsUnlocked) {
  told().didLock();
  told().willSleep();
  told().didWake();
  EXPECT_EQ(diary, (Texts{"sospesa", "sospesa", "sospesa"}));
  told().didUnlock();
  EXPECT_EQ(diary.back(), "ripresa");
}

TEST_F(ControllerSessionTest, inputOnTheLockScreenIsNoActivity) {
  goLive();
  told().didLock();
  idleSeconds = 2;
  window().scripts.clear();
  for (int i = 0; i < 9; ++i) {
    system.time.advance(30s);
    pushFromPage(session());
  }
  EXPECT_EQ(window().scripts, Texts());
  system.time.advance(30s);
  EXPECT_EQ(window().scripts, Texts{commandScript("inattivo", "'300'")});
  told().didUnlock();
  window().scripts.clear();
  system.time.advance(30s);
  EXPECT_EQ(window().scripts, Texts());
}

TEST_F(ControllerSessionTest, nobodyIsToldWhenItIsGone) {
  controller.reset();
  EXPECT_EQ(system.sessionWatch.delegate, nullptr);
}

TEST_F(ControllerSessionTest, doesWithoutADiaryAndAChannel) {
  neighbours = {};
  launch();
  told().willSleep();
  told().didLock();
  told().didWake();
  told().didUnlock();
}

}  // namespace
}  // namespace orvalle::app
