#include "app/clock.h"

#include <gtest/gtest.h>

#include <csignal>
#include <limits>
#include <string>

namespace orvalle::app {
namespace {

class ClockTest : public ::testing::Test {};

TEST_F(ClockTest, writesMinutesAsTime) {
  struct Row {
    double minutes;
    std::string text;
  };
  for (const auto& row : {
           Row{0, "0:00"},
           Row{7.0 / 60, "0:07"},
           Row{1, "1:00"},
           Row{9.5, "9:30"},
           Row{10, "10:00"},
           Row{24 + 13.0 / 60, "24:13"},
           Row{59.99, "59:59"},
           Row{59.995, "1:00:00"},
           Row{60, "1:00:00"},
           Row{65.15, "1:05:09"},
           Row{125.5, "2:05:30"},
           Row{600, "10:00:00"},
           Row{6000, "100:00:00"},
           Row{1440 * 365.0, "8760:00:00"},
       }) {
    EXPECT_EQ(clock(row.minutes), row.text) << row.minutes;
  }
}

TEST_F(ClockTest, roundsToTheNearestSecondHalvesUp) {
  EXPECT_EQ(clock(0.49 / 60), "0:00");
  EXPECT_EQ(clock(0.5 / 60), "0:01");
  EXPECT_EQ(clock(1.5 / 60), "0:02");
  EXPECT_EQ(clock(2.5 / 60), "0:03");
  EXPECT_EQ(clock(59.4 / 60), "0:59");
  EXPECT_EQ(clock(59.5 / 60), "1:00");
}

TEST_F(ClockTest, writesNegativeTimesAsZero) {
  for (const double minutes : {-0.0, -0.001, -0.4, -3.0, -1e9, -1.5e17})
    EXPECT_EQ(clock(minutes), "0:00") << minutes;
}

TEST_F(ClockTest, reachesToTheEndOfItsRange) {
  EXPECT_EQ(clock(1e15), "16666666666666:40:00");
  EXPECT_EQ(clock(1.5e17), "2500000000000000:00:00");
  // The least number of seconds that a signed 64-bit integer holds.
  EXPECT_EQ(clock(-0x1p63 / 60), "0:00");
}

using ClockDeathTest = ClockTest;

TEST_F(ClockDeathTest, stopsTheProgramForWhatItCannotShow) {
  for (const double minutes :
       {1.6e17, -1.6e17, 0x1p63 / 60, 1e300, -1e300, std::numeric_limits<double>::infinity(),
        -std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()}) {
    EXPECT_EXIT(clock(minutes), ::testing::KilledBySignal(SIGABRT), "") << minutes;
  }
}

}  // namespace
}  // namespace orvalle::app
