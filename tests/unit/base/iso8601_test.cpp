#include "base/iso8601.h"

#include <gtest/gtest.h>

namespace orvalle::base {
namespace {

using namespace std::chrono;

TEST(Iso8601, isWrittenInUtcToTheSecond) {
  EXPECT_EQ(writeIso8601(sys_days(year(2025) / 3 / 14) + 9h + 5min), "2025-03-14T09:05:00Z");
  EXPECT_EQ(writeIso8601(sys_days(year(2024) / 2 / 29) + 23h + 59min + 59s), "2024-02-29T23:59:59Z");
}

TEST(Iso8601, isWrittenForDaysBeforeTheEpoch) {
  EXPECT_EQ(writeIso8601(sys_seconds(-1s)), "1969-12-31T23:59:59Z");
  EXPECT_EQ(writeIso8601(sys_days(year(0) / 1 / 1)), "0000-01-01T00:00:00Z");
}

TEST(Iso8601, isReadAsItIsWritten) {
  for (const char* text : {"2025-03-14T09:05:00Z", "1969-12-31T23:59:59Z", "0000-01-01T00:00:00Z",
                           "9999-12-31T23:59:59Z", "2024-02-29T00:00:00Z"}) {
    const auto moment = readIso8601(text);
    ASSERT_TRUE(moment) << text;
    EXPECT_EQ(writeIso8601(*moment), text);
  }
}

TEST(Iso8601, isNotReadWithAFraction) {
  EXPECT_FALSE(readIso8601("2025-03-14T09:05:00.250Z"));
  EXPECT_FALSE(readIso8601("2025-03-14T09:05:00.Z"));
  EXPECT_FALSE(readIso8601("2025-03-14T09:05:00,5Z"));
}

TEST(Iso8601, isReadInThisFormOnly) {
  for (const char* text :
       {"", "2025-03-14", "2025-03-14T09:05:00", "2025-03-14T09:05Z", "2025-03-14 09:05:00Z",
        "2025-03-14t09:05:00Z", "2025-03-14T09:05:00z", "20250314T090500Z", " 2025-03-14T09:05:00Z",
        "2025-03-14T09:05:00Z ", "+2025-03-14T09:05:00Z", "12025-03-14T09:05:00Z", "2025-3-14T09:05:00Z",
        "2025-03-14T09:05:00+01:00", "2025-03-14T-9:05:00Z", "2025-03-14T+9:05:00Z", "2025-03-14T09:05:0aZ",
        "2025/03/14T09:05:00Z"}) {
    EXPECT_FALSE(readIso8601(text)) << text;
  }
}

TEST(Iso8601, isNotReadWhereTheDateOrTheTimeDoesNotExist) {
  for (const char* text : {"2025-02-29T00:00:00Z", "1900-02-29T00:00:00Z", "2025-00-10T00:00:00Z",
                           "2025-13-10T00:00:00Z", "2025-04-31T00:00:00Z", "2025-04-00T00:00:00Z",
                           "2025-03-14T24:00:00Z", "2025-03-14T09:60:00Z", "2025-03-14T09:05:60Z"}) {
    EXPECT_FALSE(readIso8601(text)) << text;
  }
}

}  // namespace
}  // namespace orvalle::base
