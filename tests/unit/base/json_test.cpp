#include "base/json.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>

namespace orvalle::base {
namespace {

using namespace std::string_view_literals;

std::string repeated(std::string_view text, int times) {
  std::string all;
  for (int i = 0; i < times; ++i) all += text;
  return all;
}

std::string printable(std::string_view text) {
  return ::testing::PrintToString(std::string(text.substr(0, 80)));
}

class JsonTest : public ::testing::Test {
 protected:
  /// What the strict readers make of the member "v" of an object that holds `value` there.
  static std::optional<Json> member(std::string_view value) {
    const auto document = parseJson("{\"v\":" + std::string(value) + "}");
    const auto* found = document ? jsonMember(*document, "v") : nullptr;
    return found ? std::optional(*found) : std::nullopt;
  }
  static std::optional<std::string> text(std::string_view literal) {
    const auto value = member(literal);
    return value ? jsonText(&*value) : std::nullopt;
  }
};

TEST_F(JsonTest, readsEveryKindOfDocument) {
  for (const auto document : {"null"sv, "true"sv, "false"sv, "0"sv, "-1.5e3"sv, "\"\""sv, "[]"sv, "{}"sv,
                              " \t\r\n{ \"a\" : [ 1 , 2 ] } \t\r\n"sv, "[[],{},\"\",null]"sv}) {
    EXPECT_TRUE(parseJson(document)) << document;
  }
}

TEST_F(JsonTest, refusesWhatIsNotExactlyOneDocument) {
  for (const auto document : {
           ""sv,
           " "sv,
           "{"sv,
           "}"sv,
           "[1"sv,
           "\"abc"sv,
           "{} {}"sv,
           "{}x"sv,
           "1 2"sv,
           "null,"sv,
           "[1,]"sv,
           "[,1]"sv,
           "[1,,2]"sv,
           "{\"a\":1,}"sv,
           "{,}"sv,
           "{\"a\"}"sv,
           "{\"a\":}"sv,
           "{a:1}"sv,
           "{'a':1}"sv,
           "{1:1}"sv,
           "[1] // after"sv,
           "/* before */ [1]"sv,
           "[1 /* inside */]"sv,
           "# [1]"sv,
           "NaN"sv,
           "Infinity"sv,
           "-Infinity"sv,
           "undefined"sv,
           "True"sv,
           "nul"sv,
           "nulll"sv,
           "+1"sv,
           "01"sv,
           "-"sv,
           "1."sv,
           ".5"sv,
           "1e"sv,
           "1e+"sv,
           "0x10"sv,
           "1,5"sv,
           "\xEF\xBB\xBF{}"sv,  // a byte order mark
           "\0"sv,
           "{}\0"sv,
       }) {
    EXPECT_FALSE(parseJson(document)) << printable(document);
  }
}

TEST_F(JsonTest, readsTextWithItsEscapes) {
  EXPECT_EQ(text(R"("a\"\\\/\b\f\n\r\tz")"), "a\"\\/\b\f\n\r\tz");
  EXPECT_EQ(text(R"("\u0041\u00e8\u2022")"), "Aè•");
  EXPECT_EQ(text(R"("\ud83c\udfaf")"), "🎯");
  EXPECT_EQ(text("\"caffè • 🎯\""), "caffè • 🎯");
  EXPECT_EQ(text(R"("a\u0000b")"), std::string("a\0b", 3));
  EXPECT_EQ(text("\"\u2028\u202E\""), "\u2028\u202E");
}

TEST_F(JsonTest, refusesTextThatIsNotUnicode) {
  for (const auto literal : {
           R"("\ud800")"sv,  // the first half of a pair alone
           R"("\udc00")"sv,  // the second half alone
           R"("\ud800\ud800")"sv,
           R"("\ud800x")"sv,
           R"("\ud800\u0041")"sv,
           R"("\udfaf\ud83c")"sv,
           "\"\xED\xA0\x80\""sv,
           "\"\xFF\""sv,
           "\"\xC3\""sv,
           "\"\xC0\x80\""sv,
           "\"a\nb\""sv,  // control characters must be escaped
           "\"a\tb\""sv,
           "\"a\0b\""sv,
           R"("\x41")"sv,
           R"("\u12")"sv,
           R"("\u12G4")"sv,
           R"("\")"sv,
       }) {
    EXPECT_FALSE(member(literal)) << printable(literal);
  }
  EXPECT_FALSE(parseJson("{\"\\ud800\":1}"));
  EXPECT_FALSE(parseJson("{\"\xFF\":1}"));
}

TEST_F(JsonTest, goes512LevelsDeepAndNoFurther) {
  EXPECT_TRUE(parseJson(repeated("[", 512) + repeated("]", 512)));
  EXPECT_FALSE(parseJson(repeated("[", 513) + repeated("]", 513)));
  EXPECT_TRUE(parseJson(repeated("{\"a\":", 511) + "{}" + repeated("}", 511)));
  EXPECT_FALSE(parseJson(repeated("{\"a\":", 512) + "{}" + repeated("}", 512)));
  EXPECT_FALSE(parseJson(repeated("[", 100'000)));
  EXPECT_FALSE(parseJson(repeated("[", 100'000) + repeated("]", 100'000)));
  EXPECT_FALSE(parseJson(repeated("{\"a\":", 100'000)));
}

TEST_F(JsonTest, readsLongTextsWhole) {
  const std::string megabyte = repeated("è🎯a", 150'000);
  EXPECT_EQ(text("\"" + megabyte + "\""), megabyte);
}

TEST_F(JsonTest, findsMembersByTheirExactName) {
  const auto document = parseJson(R"({"Key":1,"":2,"k\u0000":3})");
  ASSERT_TRUE(document);
  EXPECT_TRUE(jsonMember(*document, "Key"));
  EXPECT_FALSE(jsonMember(*document, "key"));
  EXPECT_FALSE(jsonMember(*document, "Ke"));
  EXPECT_FALSE(jsonMember(*document, "k"));
  EXPECT_EQ(jsonInteger(jsonMember(*document, "")), 2);
  EXPECT_EQ(jsonInteger(jsonMember(*document, "k\0"sv)), 3);
  for (const auto other : {"[1]", "\"Key\"", "1", "null", "true"}) {
    EXPECT_FALSE(jsonMember(parseJson(other).value(), "Key")) << other;
  }
}

TEST_F(JsonTest, neverTakesOneTypeForAnother) {
  struct Row {
    std::string_view text;
    bool boolean, number, text_;
  };
  for (const auto& row : {
           Row{"true", true, false, false},
           Row{"false", true, false, false},
           Row{"0", false, true, false},
           Row{"1", false, true, false},
           Row{"1.0", false, true, false},
           Row{"\"true\"", false, false, true},
           Row{"\"1\"", false, false, true},
           Row{"\"\"", false, false, true},
           Row{"null", false, false, false},
           Row{"[]", false, false, false},
           Row{"[1]", false, false, false},
           Row{"{}", false, false, false},
       }) {
    const auto value = member(row.text);
    ASSERT_TRUE(value) << row.text;
    EXPECT_EQ(jsonBoolean(&*value).has_value(), row.boolean) << row.text;
    EXPECT_EQ(jsonNumber(&*value).has_value(), row.number) << row.text;
    EXPECT_EQ(jsonText(&*value).has_value(), row.text_) << row.text;
  }
  EXPECT_FALSE(jsonBoolean(nullptr));
  EXPECT_FALSE(jsonNumber(nullptr));
  EXPECT_FALSE(jsonText(nullptr));
  const Json yes(true);
  const Json no(false);
  EXPECT_EQ(jsonBoolean(&yes), true);
  EXPECT_EQ(jsonBoolean(&no), false);
}

TEST_F(JsonTest, aCopyInMemoryOfItsOwnOutlivesTheArena) {
  std::optional<Json> copy;
  {
    unsigned char buffer[64];
    JsonArena arena(buffer, sizeof buffer);
    const auto read = parseJson(R"({"a":["a text that fills more than the buffer",1.5,{"b":null}]})", &arena);
    ASSERT_TRUE(read);
    copy.emplace(*read, boost::json::storage_ptr());
  }
  EXPECT_EQ(writeJson(*copy), R"({"a":["a text that fills more than the buffer",1.5E0,{"b":null}]})");
}

}  // namespace
}  // namespace orvalle::base
