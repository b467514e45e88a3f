#include "base/decimal.h"

#include <gtest/gtest.h>

#include <charconv>
#include <cmath>
#include <cstring>
#include <optional>
#include <random>
#include <string>

namespace orvalle::base {
namespace {

/// Both ways of reading must say the same.
class DecimalTest : public ::testing::TestWithParam<std::optional<double> (*)(std::string_view)> {
 protected:
  static std::optional<double> read(std::string_view text) { return GetParam()(text); }
};

INSTANTIATE_TEST_SUITE_P(, DecimalTest, ::testing::Values(decimalNumber, decimalNumberOfC));

TEST_P(DecimalTest, readsTheNearestNumber) {
  EXPECT_EQ(read("0"), 0.0);
  EXPECT_EQ(read("24.5"), 24.5);
  EXPECT_EQ(read("-12.5e3"), -12500.0);
  EXPECT_EQ(read("0.1"), 0.1);
  EXPECT_EQ(read("9007199254740993"), 9007199254740992.0);
  EXPECT_EQ(read("1.7976931348623157e308"), 1.7976931348623157e308);
  EXPECT_EQ(read("5e-324"), 5e-324);
  EXPECT_EQ(read("2.2250738585072011e-308"), 2.2250738585072011e-308);
  EXPECT_TRUE(std::signbit(read("-0").value()));
}

TEST_P(DecimalTest, refusesWhatIsTooGreatOrTooSmall) {
  EXPECT_FALSE(read("1e309"));
  EXPECT_FALSE(read("-1e309"));
  EXPECT_FALSE(read("1e-400"));
  EXPECT_EQ(read("0e-400"), 0.0);
  EXPECT_EQ(read("0.000e999"), 0.0);
}

TEST_P(DecimalTest, refusesWhatIsNoDecimalNumber) {
  for (const char* text : {"", " 1", "1 ", "+1", "0x10", "1e", "e5", "--1", "1.2.3", "inf", "nan", "infinity",
                           "1,5", "-", ".", "1e+-5", "1-2"}) {
    EXPECT_FALSE(read(text)) << text;
  }
}

TEST_P(DecimalTest, readsEveryNumberAsItWasWritten) {
  std::mt19937_64 random(7);
  for (int i = 0; i < 20'000; ++i) {
    const auto bits = random();
    double value;
    static_assert(sizeof value == sizeof bits);
    std::memcpy(&value, &bits, sizeof value);
    if (!std::isfinite(value) || value == 0) continue;
    char text[32];
    const auto end = std::to_chars(text, text + sizeof text, value).ptr;
    ASSERT_EQ(read({text, end}), value) << std::string(text, end);
  }
}

}  // namespace
}  // namespace orvalle::base
