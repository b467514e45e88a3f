#include "tests/unit/services/attivita_fixture.h"

/// The diary while the user cannot be at work.
namespace orvalle::services {
namespace {

using namespace std::chrono_literals;
using std::nullopt;

class AttivitaPauseTest : public AttivitaFixture {};

TEST_F(AttivitaPauseTest, blockEndsWhenTheMachineGoesToSleep) {
  turnOn();
  use("Editor");
  pass(3min + 2s);
  diary->sospendi();
  EXPECT_EQ(saved(), (std::vector<Blocco>{{"Editor", nullopt, at(9, 0, 5), at(9, 3, 2)}}));
  EXPECT_EQ(system.time.timerCount(), 0u);
}

TEST_F(AttivitaPauseTest, nightIsInNoBlock) {
  turnOn();
  use("Editor");
  pass(3min);
  diary->sospendi();
  pass(14h);
  diary->riprendi();
  pass(2min);
  diary->ferma();
  EXPECT_EQ(saved("2026-03-02"), (std::vector<Blocco>{{"Editor", nullopt, at(9, 0, 5), at(9, 3)},
                                                      {"Editor", nullopt, at(23, 3, 5), at(23, 5)}}));
}

TEST_F(AttivitaPauseTest, sleepOverMidnightBelongsToTheDayBefore) {
  turnOn();
  use("Editor");
  pass(3min);
  diary->sospendi();
  pass(20h);
  diary->riprendi();
  pass(2min);
  EXPECT_EQ(saved("2026-03-02"), (std::vector<Blocco>{{"Editor", nullopt, at(9, 0, 5), at(9, 3)}}));
  EXPECT_EQ(told("2026-03-03"), (std::vector<Blocco>{{"Editor", nullopt, at(5, 3, 5, 3), at(5, 5, 0, 3)}}));
}

TEST_F(AttivitaPauseTest, pausedTwiceItGoesOnOnce) {
  turnOn();
  diary->sospendi();
  diary->sospendi();
  diary->riprendi();
  EXPECT_EQ(system.time.timerCount(), 1u);
  diary->riprendi();
  EXPECT_EQ(system.time.timerCount(), 1u);
}

TEST_F(AttivitaPauseTest, diaryThatIsOffStaysOff) {
  diary->sospendi();
  diary->riprendi();
  EXPECT_EQ(system.time.timerCount(), 0u);
  EXPECT_EQ(system.frontmost.looks, 0);
}

TEST_F(AttivitaPauseTest, turnedOffInThePauseItStaysOff) {
  turnOn();
  diary->sospendi();
  diary->setAcceso(false);
  diary->ferma();
  diary->riprendi();
  EXPECT_EQ(system.time.timerCount(), 0u);
}

TEST_F(AttivitaPauseTest, turnedOnInThePauseItWaitsForItsEnd) {
  diary->sospendi();
  turnOn();
  use("Editor");
  pass(10min);
  EXPECT_EQ(system.frontmost.looks, 0);
  diary->riprendi();
  pass(5s);
  EXPECT_EQ(system.frontmost.looks, 1);
}

}  // namespace
}  // namespace orvalle::services
