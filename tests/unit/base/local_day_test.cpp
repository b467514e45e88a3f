#include "base/local_day.h"

#include <gtest/gtest.h>

#include <clocale>
#include <string>

#include "tests/unit/base/time_zone.h"

namespace orvalle::base {
namespace {

using namespace std::chrono;

sys_seconds at(int y, unsigned m, unsigned d, int h, int min = 0, int s = 0) {
  return sys_days(year(y) / month(m) / day(d)) + hours(h) + minutes(min) + seconds(s);
}

TEST(LocalDay, isTheDateInTheUsersTimeZone) {
  const TimeZone zone("UTC");
  EXPECT_EQ(localDay(at(2025, 3, 14, 23, 59, 59)), "2025-03-14");
  EXPECT_EQ(localDay(at(2025, 3, 15, 0)), "2025-03-15");
}

TEST(LocalDay, reachesFromOneEndOfTheWorldToTheOther) {
  {
    const TimeZone zone("Pacific/Kiritimati");
    EXPECT_EQ(localDay(at(2025, 3, 14, 9, 59, 59)), "2025-03-14");
    EXPECT_EQ(localDay(at(2025, 3, 14, 10)), "2025-03-15");
  }
  const TimeZone zone("America/Los_Angeles");
  EXPECT_EQ(localDay(at(2025, 3, 14, 6, 59, 59)), "2025-03-13");
  EXPECT_EQ(localDay(at(2025, 3, 14, 7)), "2025-03-14");
}

TEST(LocalDay, followsAChangeOfTimeZone) {
  const TimeZone rome("Europe/Rome");
  EXPECT_EQ(localDay(at(2025, 3, 14, 23, 30)), "2025-03-15");
  const TimeZone lisbon("Europe/Lisbon");
  EXPECT_EQ(localDay(at(2025, 3, 14, 23, 30)), "2025-03-14");
}

TEST(LocalDay, followsSummerTime) {
  const TimeZone zone("Europe/Rome");
  // Midnight comes an hour earlier by the world's clock once summer time holds.
  EXPECT_EQ(localDay(at(2026, 3, 28, 22, 59, 59)), "2026-03-28");
  EXPECT_EQ(localDay(at(2026, 3, 28, 23)), "2026-03-29");
  EXPECT_EQ(localDay(at(2026, 3, 29, 21, 59, 59)), "2026-03-29");
  EXPECT_EQ(localDay(at(2026, 3, 29, 22)), "2026-03-30");
}

TEST(LocalDay, hasADayThatBeginsAfterMidnight) {
  // There the clocks go forward at midnight: the day's first moment is one o'clock.
  const TimeZone zone("Africa/Cairo");
  EXPECT_EQ(localDay(at(2025, 4, 24, 21, 59, 59)), "2025-04-24");
  EXPECT_EQ(localDay(at(2025, 4, 24, 22)), "2025-04-25");
}

TEST(LocalDay, doesNotCareForTheLocale) {
  const TimeZone zone("UTC");
  const std::string before = std::setlocale(LC_ALL, nullptr);
  for (const char* locale : {"it_IT.UTF-8", "ar_EG.UTF-8", "C.UTF-8", "C"}) {
    std::setlocale(LC_ALL, locale);
    EXPECT_EQ(localDay(at(2025, 3, 4, 12)), "2025-03-04") << locale;
  }
  std::setlocale(LC_ALL, before.c_str());
}

TEST(LocalDay, reachesBackBeforeTheEpoch) {
  const TimeZone zone("UTC");
  EXPECT_EQ(localDay(at(1969, 12, 31, 23, 59, 59)), "1969-12-31");
}

}  // namespace
}  // namespace orvalle::base
