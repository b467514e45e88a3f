#include <gtest/gtest.h>

#include <boost/json/array.hpp>

#include <clocale>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/json.h"

namespace orvalle::base {
namespace {

using namespace std::string_view_literals;

class JsonNumbersTest : public ::testing::Test {
 protected:
  static Json document(std::string_view text) {
    const auto parsed = parseJson(text);
    EXPECT_TRUE(parsed) << text;
    return parsed.value_or(Json());
  }
  static std::optional<double> number(std::string_view text) {
    const auto value = document(text);
    return jsonNumber(&value);
  }
  static std::optional<std::int64_t> integer(std::string_view text) {
    const auto value = document(text);
    return jsonInteger(&value);
  }
};

TEST_F(JsonNumbersTest, readsNumbersExactly) {
  struct Row {
    std::string_view text;
    double value;
  };
  for (const auto& row : {
           Row{"0", 0},
           Row{"3", 3},
           Row{"-7", -7},
           Row{"0.1", 0.1},
           Row{"24.216666666666665", 24.216666666666665},
           Row{"0.30000000000000004", 0.30000000000000004},
           Row{"1.7976931348623157e308", 1.7976931348623157e308},
           Row{"-1.7976931348623157E+308", -1.7976931348623157e308},
           Row{"2.2250738585072014e-308", 2.2250738585072014e-308},
           Row{"5e-324", 5e-324},
           Row{"9007199254740993", 9007199254740992.0},
           Row{"9007199254740993.0", 9007199254740992.0},
           Row{"18446744073709551615", 18446744073709551615.0},
           Row{"18446744073709551616", 18446744073709551616.0},
           Row{"123456789012345678901234567890", 123456789012345678901234567890.0},
           Row{"0.000000000000000000000000000000123456789012345678901", 0.123456789012345678901e-30},
           Row{"6.02214076e23", 6.02214076e23},
           Row{"8.5e-5", 8.5e-5},
           Row{"3.4028235677973366e38", 3.4028235677973366e38},
           Row{"1.00000000000000011102230246251565404236316680908203125", 1.0},
           Row{"0e400", 0},
           Row{"0.0", 0},
       }) {
    EXPECT_EQ(number(row.text), row.value) << row.text;
  }
  const auto negativeZero = number("-0.0");
  ASSERT_TRUE(negativeZero);
  EXPECT_EQ(*negativeZero, 0);
}

TEST_F(JsonNumbersTest, readsManyNumbersInOneDocument) {
  const auto list = document("[0.5,1.25,7,-2.5e3,18446744073709551615,0.125]");
  ASSERT_TRUE(list.is_array());
  std::vector<double> numbers;
  for (const auto& value : list.get_array()) numbers.push_back(jsonNumber(&value).value());
  EXPECT_EQ(numbers, (std::vector<double>{0.5, 1.25, 7, -2500, 18446744073709551615.0, 0.125}));
}

TEST_F(JsonNumbersTest, readsNumbersAlikeInEveryLocale) {
  // A locale with a decimal comma, where the machine has one.
  const char* before = std::setlocale(LC_NUMERIC, "it_IT.UTF-8");
  EXPECT_EQ(number("24.5"), 24.5);
  EXPECT_EQ(writeJson(Json(24.5)).value().find(','), std::string::npos);
  if (before) std::setlocale(LC_NUMERIC, "C");
}

TEST_F(JsonNumbersTest, keepsADocumentWithANumberOutsideTheRangeAndRefusesTheNumber) {
  for (const auto text : {"1e400"sv, "-1e400"sv, "1e-400"sv, "-1e-400"sv, "1e308000"sv, "1e-308000"sv,
                          "123456789e999999999"sv}) {
    const auto value = document("{\"v\":" + std::string(text) + ",\"w\":1}");
    ASSERT_TRUE(jsonMember(value, "v")) << text;
    EXPECT_FALSE(jsonNumber(jsonMember(value, "v"))) << text;
    EXPECT_FALSE(jsonInteger(jsonMember(value, "v"))) << text;
    EXPECT_EQ(jsonInteger(jsonMember(value, "w")), 1) << text;
  }
}

TEST_F(JsonNumbersTest, refusesADocumentWithAnExponentBeyond32Bits) {
  EXPECT_FALSE(parseJson("[1e99999999999]"));
  EXPECT_FALSE(parseJson("[1e-99999999999]"));
}

TEST_F(JsonNumbersTest, readsWholeNumbersOf64BitsAsIntegers) {
  struct Row {
    std::string_view text;
    std::optional<std::int64_t> value;
  };
  for (const auto& row : {
           Row{"7", 7},
           Row{"-7", -7},
           Row{"0", 0},
           Row{"7.0", 7},
           Row{"12.0", 12},
           Row{"1e1", 10},
           Row{"-0.0", 0},
           Row{"9007199254740993", 9007199254740993},
           Row{"9223372036854775807", std::numeric_limits<std::int64_t>::max()},
           Row{"-9223372036854775808", std::numeric_limits<std::int64_t>::min()},
           Row{"-9223372036854775808.0", std::numeric_limits<std::int64_t>::min()},
           Row{"12.5", {}},
           Row{"9223372036854775808", {}},
           Row{"9223372036854775808.0", {}},
           Row{"-9223372036854777856", {}},
           Row{"18446744073709551615", {}},
           Row{"1e19", {}},
           Row{"1e300", {}},
           Row{"1e-1", {}},
           Row{"true", {}},
           Row{"\"7\"", {}},
           Row{"null", {}},
           Row{"[7]", {}},
       }) {
    EXPECT_EQ(integer(row.text), row.value) << row.text;
  }
  EXPECT_FALSE(jsonInteger(nullptr));
}

}  // namespace
}  // namespace orvalle::base
