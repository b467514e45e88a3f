// The diary and the calendar: midnight, time zones, clocks that jump, machines that sleep.

#include "tests/unit/services/attivita_fixture.h"

namespace orvalle::services {
namespace {

using namespace std::chrono;
using std::nullopt;
namespace fs = std::filesystem;

class AttivitaDaysTest : public AttivitaFixture {
 protected:
  /// Goes to this moment, with the machine off meanwhile.
  void goTo(sys_seconds moment) { system.time.jumpWallClock(moment - system.time.now()); }
  static sys_seconds utc(int y, unsigned m, unsigned d, int h, int min = 0) {
    return sys_days(year(y) / month(m) / day(d)) + hours(h) + minutes(min);
  }
};

TEST_F(AttivitaDaysTest, midnightClosesTheStretchIntoTheOldDay) {
  goTo(utc(2026, 3, 2, 23, 50));
  turnOn();
  use("Editor", "a");
  pass(20min);
  EXPECT_EQ(saved("2026-03-02"), (std::vector<Blocco>{{"Editor", nullopt, at(23, 50, 5), at(23, 59, 55)}}));
  EXPECT_EQ(told("2026-03-03"), (std::vector<Blocco>{{"Editor", nullopt, at(0, 0, 0, 3), at(0, 10, 0, 3)}}));
  diary->ferma();
  EXPECT_EQ(saved("2026-03-03"), (std::vector<Blocco>{{"Editor", nullopt, at(0, 0, 0, 3), at(0, 10, 0, 3)}}));
}

TEST_F(AttivitaDaysTest, midnightDropsAStretchThatIsTooShortForTheOldDay) {
  goTo(utc(2026, 3, 2, 23, 59));
  turnOn();
  use("Editor");
  pass(5min);
  EXPECT_EQ(contents("2026-03-02"), "[]");
  diary->ferma();
  EXPECT_EQ(saved("2026-03-03"), (std::vector<Blocco>{{"Editor", nullopt, at(0, 0, 0, 3), at(0, 4, 0, 3)}}));
}

TEST_F(AttivitaDaysTest, midnightPassesAlsoWithNothingInFront) {
  goTo(utc(2026, 3, 2, 23, 50));
  turnOn();
  use("Editor");
  pass(5min);
  system.frontmost.name = nullopt;
  pass(10min);
  EXPECT_EQ(saved("2026-03-02"), (std::vector<Blocco>{{"Editor", nullopt, at(23, 50, 5), at(23, 55, 0)}}));
  EXPECT_TRUE(told("2026-03-03").empty());
}

TEST_F(AttivitaDaysTest, aNewDayGoesOnWithWhatItsFileHas) {
  writeDay("2026-03-03", R"([{"app":"Posta","da":"2026-03-03T00:00:00Z","a":"2026-03-03T00:01:00Z"}])");
  goTo(utc(2026, 3, 2, 23, 59));
  turnOn();
  use("Editor");
  pass(5min);
  diary->ferma();
  EXPECT_EQ(saved("2026-03-03").size(), 2u);
}

TEST_F(AttivitaDaysTest, theDayIsTheUsersOwn) {
  const base::TimeZone rome("Europe/Rome");
  goTo(utc(2026, 3, 2, 22, 50));
  turnOn();
  use("Editor");
  pass(20min);
  diary->ferma();
  EXPECT_EQ(saved("2026-03-02"), (std::vector<Blocco>{{"Editor", nullopt, at(22, 50, 5), at(22, 59, 55)}}));
  EXPECT_EQ(saved("2026-03-03"), (std::vector<Blocco>{{"Editor", nullopt, at(23, 0), at(23, 10)}}));
}

TEST_F(AttivitaDaysTest, aJourneyToAnotherTimeZoneMayEndTheDay) {
  const base::TimeZone rome("Europe/Rome");
  goTo(utc(2026, 3, 2, 20));
  turnOn();
  use("Editor");
  pass(2min);
  const base::TimeZone tokyo("Asia/Tokyo");
  pass(2min);
  diary->ferma();
  EXPECT_EQ(saved("2026-03-02"), (std::vector<Blocco>{{"Editor", nullopt, at(20, 0, 5), at(20, 2, 0)}}));
  EXPECT_EQ(saved("2026-03-03"), (std::vector<Blocco>{{"Editor", nullopt, at(20, 2, 5), at(20, 4, 0)}}));
}

TEST_F(AttivitaDaysTest, theHourThatSummerTimeLeavesOutIsNoTime) {
  const base::TimeZone rome("Europe/Rome");
  // From 1:50 to 3:10 by the clock on the wall: twenty minutes.
  goTo(utc(2026, 3, 29, 0, 50));
  turnOn();
  use("Editor");
  pass(20min);
  diary->ferma();
  const auto blocchi = saved("2026-03-29");
  ASSERT_EQ(blocchi.size(), 1u);
  EXPECT_EQ(blocchi[0].a - blocchi[0].da, 20min - 5s);
}

TEST_F(AttivitaDaysTest, theHourThatWinterTimeRepeatsCountsTwice) {
  const base::TimeZone rome("Europe/Rome");
  goTo(utc(2026, 10, 24, 23, 30));
  turnOn();
  use("Editor");
  pass(2h);
  diary->ferma();
  const auto blocchi = saved("2026-10-25");
  ASSERT_EQ(blocchi.size(), 1u);
  EXPECT_EQ(blocchi[0].minuti(), 119);
}

TEST_F(AttivitaDaysTest, aDayWithSummerTimeEndsAtItsOwnMidnight) {
  const base::TimeZone rome("Europe/Rome");
  goTo(utc(2026, 3, 29, 21, 50));
  turnOn();
  use("Editor");
  pass(20min);
  EXPECT_EQ(saved("2026-03-29").size(), 1u);
  EXPECT_EQ(told("2026-03-30").size(), 1u);
}

TEST_F(AttivitaDaysTest, aClockSetBackEndsNoStretchWellAndLosesNoneThatIsClosed) {
  turnOn();
  use("Editor");
  pass(5min);
  use("Posta");
  pass(2min);
  system.time.jumpWallClock(-30min);
  pass(1min);
  use("Editor");
  pass(5s);
  // Posta was seen last before it was seen first.
  EXPECT_EQ(saved(), (std::vector<Blocco>{{"Editor", nullopt, at(9, 0, 5), at(9, 5, 0)}}));
}

TEST_F(AttivitaDaysTest, aClockSetForwardMakesTheStretchLonger) {
  turnOn();
  use("Editor");
  pass(1min);
  system.time.jumpWallClock(30min);
  pass(1min);
  diary->ferma();
  EXPECT_EQ(saved(), (std::vector<Blocco>{{"Editor", nullopt, at(9, 0, 5), at(9, 32, 0)}}));
}

TEST_F(AttivitaDaysTest, aClockSetBackOverMidnightGoesOnWithTheDayBefore) {
  writeDay("2026-03-01", R"([{"app":"Posta","da":"2026-03-01T08:00:00Z","a":"2026-03-01T08:30:00Z"}])");
  turnOn();
  use("Editor");
  pass(2min);
  system.time.jumpWallClock(-24h);
  pass(2min);
  diary->ferma();
  EXPECT_EQ(saved("2026-03-02").size(), 1u);
  EXPECT_EQ(saved("2026-03-01"), (std::vector<Blocco>{{"Posta", nullopt, at(8, 0, 0, 1), at(8, 30, 0, 1)},
                                                      {"Editor", nullopt, at(9, 2, 5, 1), at(9, 4, 0, 1)}}));
}

TEST_F(AttivitaDaysTest, aSleepWithTheSameWindowBeforeAndAfterBelongsToTheStretch) {
  turnOn();
  use("Editor");
  pass(2min);
  // The timers stand still, the wall clock does not.
  system.time.jumpWallClock(2h);
  pass(1min);
  EXPECT_EQ(told(), (std::vector<Blocco>{{"Editor", nullopt, at(9, 0, 5), at(11, 3, 0)}}));
}

TEST_F(AttivitaDaysTest, aSleepEndsTheStretchWhereAnotherWindowIsInFrontAfterIt) {
  turnOn();
  use("Editor");
  pass(2min);
  use("Posta");
  system.time.jumpWallClock(2h);
  pass(2min);
  diary->ferma();
  EXPECT_EQ(saved(), (std::vector<Blocco>{{"Editor", nullopt, at(9, 0, 5), at(9, 2, 0)},
                                          {"Posta", nullopt, at(11, 2, 5), at(11, 4, 0)}}));
}

TEST_F(AttivitaDaysTest, aNightsSleepEndsTheStretchBeforeIt) {
  goTo(utc(2026, 3, 2, 22));
  turnOn();
  use("Editor");
  pass(10min);
  system.time.jumpWallClock(10h);
  pass(10min);
  diary->ferma();
  EXPECT_EQ(saved("2026-03-02"), (std::vector<Blocco>{{"Editor", nullopt, at(22, 0, 5), at(22, 10, 0)}}));
  EXPECT_EQ(saved("2026-03-03"),
            (std::vector<Blocco>{{"Editor", nullopt, at(8, 10, 5, 3), at(8, 20, 0, 3)}}));
}

TEST_F(AttivitaDaysTest, startedAgainOnAnotherDayClosesTheOldStretchIntoTheNewDay) {
  turnOn();
  use("Editor");
  pass(2min);
  goTo(utc(2026, 3, 3, 9));
  diary->avvia();
  use("Posta");
  pass(5s);
  EXPECT_FALSE(fs::exists(file("2026-03-02")));
  EXPECT_EQ(saved("2026-03-03"), (std::vector<Blocco>{{"Editor", nullopt, at(9, 0, 5), at(9, 2, 0)}}));
}

}  // namespace
}  // namespace orvalle::services
