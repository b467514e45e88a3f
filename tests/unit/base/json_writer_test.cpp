#include <gtest/gtest.h>

#include <boost/json/array.hpp>
#include <boost/json/object.hpp>

#include <limits>
#include <string>

#include "base/json.h"

namespace orvalle::base {
namespace {

using boost::json::array;
using boost::json::object;

class JsonWriterTest : public ::testing::Test {};

TEST_F(JsonWriterTest, writesCompactDocuments) {
  EXPECT_EQ(writeJson(object{{"a", array{1, true, nullptr, "x"}}, {"b", object{}}}),
            R"({"a":[1,true,null,"x"],"b":{}})");
  EXPECT_EQ(writeJson(Json(-12)), "-12");
  EXPECT_EQ(writeJson(Json(18446744073709551615u)), "18446744073709551615");
}

TEST_F(JsonWriterTest, writesWhatReadsBackTheSame) {
  const Json value = object{{"testo \"«»\" \\ \n\t", "🎯 \x01\x7F \u2028"},
                            {"nul", std::string("a\0b", 3)},
                            {"numeri", array{0.1, 1.0 / 3, 1e300, 5e-324, -7}}};
  const auto text = writeJson(value);
  ASSERT_TRUE(text);
  EXPECT_EQ(parseJson(*text), value) << *text;
}

TEST_F(JsonWriterTest, writesNothingThatIsNotUtf8) {
  EXPECT_FALSE(writeJson(Json("\xFF")));
  EXPECT_FALSE(writeJson(array{"good", "\xED\xA0\x80"}));
  EXPECT_FALSE(writeJson(array{array{object{{"a", "\xC3"}}}}));
  EXPECT_FALSE(writeJson(object{{"\xFF", 1}}));
}

TEST_F(JsonWriterTest, writesNoNumberThatJsonDoesNotHave) {
  EXPECT_FALSE(writeJson(Json(std::numeric_limits<double>::infinity())));
  EXPECT_FALSE(writeJson(array{std::numeric_limits<double>::quiet_NaN()}));
}

TEST(JsonWriter, appendsATextAsItWritesIt) {
  std::string all;
  for (int code = 0; code < 0x100; ++code) all += static_cast<char>(code < 0x80 ? code : 'x');
  for (const auto& text : {std::string(), std::string("Città \"€\" 😀"), std::string("\\"),
                           std::string("a\nb"), std::string("\0", 1), std::string("\x7f\x1f"), all}) {
    std::string json = "[";
    EXPECT_TRUE(appendJsonText(json, text));
    EXPECT_EQ(parseJson(json + "]"), Json(boost::json::array{boost::json::string(text)})) << text;
    EXPECT_EQ(json.substr(1), writeJson(Json(text))) << text;
  }
}

TEST(JsonWriter, appendsNothingOfATextThatIsNotUtf8) {
  std::string json = "[";
  EXPECT_FALSE(appendJsonText(json, "a\xff"));
  EXPECT_EQ(json, "[");
}

}  // namespace
}  // namespace orvalle::base
