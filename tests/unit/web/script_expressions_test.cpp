#include "web/script_expressions.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

#include "base/json.h"

namespace orvalle::web {
namespace {

using namespace std::string_literals;

class ReplyExpressionTest : public ::testing::Test {
 protected:
  static constexpr std::string_view kHead = "window.__orvalleRisposta && window.__orvalleRisposta(";
  /// The text that the page's callback receives.
  static std::optional<std::string> received(const std::string& text) {
    const auto script = replyExpression(3, text);
    const auto begin = std::string(kHead) + "3, ";
    EXPECT_TRUE(script.starts_with(begin)) << script;
    EXPECT_TRUE(script.ends_with("[0])")) << script;
    const auto array = base::parseJson(script.substr(begin.size(), script.size() - begin.size() - 4));
    EXPECT_TRUE(array && array->is_array() && array->get_array().size() == 1) << script;
    return array ? base::jsonText(&array->get_array()[0]) : std::nullopt;
  }
};

TEST_F(ReplyExpressionTest, isWrittenAsAgreed) {
  EXPECT_EQ(replyExpression(7, R"({"a":1})"),
            R"(window.__orvalleRisposta && window.__orvalleRisposta(7, ["{\"a\":1}"][0]))");
  EXPECT_EQ(replyExpression(1, ""), R"(window.__orvalleRisposta && window.__orvalleRisposta(1, [""][0]))");
}

TEST_F(ReplyExpressionTest, writesTheNumberInDecimal) {
  EXPECT_EQ(replyExpression(0, "x"), std::string(kHead) + R"(0, ["x"][0]))");
  EXPECT_EQ(replyExpression(-5, "x"), std::string(kHead) + R"(-5, ["x"][0]))");
  EXPECT_EQ(replyExpression(std::numeric_limits<std::int64_t>::max(), "x"),
            std::string(kHead) + R"(9223372036854775807, ["x"][0]))");
}

TEST_F(ReplyExpressionTest, bringsEveryTextIntact) {
  for (const auto& text : {"quote \" apostrophe ' backslash \\ slash / done"s, "line\nbreak\r\ttab"s,
                           "nul \0 inside"s, "\x01\x1F\x7F"s, "\u2028\u2029"s, "\"]); window.pwned=1; ([\""s,
                           "</script>"s, "caffè • 🎯 \u202E"s, std::string(1'000'000, '"')}) {
    EXPECT_EQ(received(text), text);
  }
}

TEST_F(ReplyExpressionTest, isOneLine) {
  EXPECT_EQ(replyExpression(1, "a\nb\rc").find_first_of("\n\r"), std::string::npos);
}

TEST_F(ReplyExpressionTest, bringsAnEmptyTextForOneThatIsNotUtf8) {
  for (const auto& text : {"\xFF"s, "good \xC3"s, "\xED\xA0\x80"s}) {
    EXPECT_EQ(replyExpression(2, text), std::string(kHead) + R"(2, [""][0]))");
  }
}

class CommandExpressionTest : public ::testing::Test {
 protected:
  /// The expression for the command "task" with this argument, without what is always there.
  static std::string argument(const std::string& id) {
    const auto script = commandExpression("task", id);
    const std::string before = "window.__orvalleComando && window.__orvalleComando('task', ";
    EXPECT_TRUE(script.starts_with(before) && script.ends_with(")")) << script;
    return script.substr(before.size(), script.size() - before.size() - 1);
  }
};

TEST_F(CommandExpressionTest, isWrittenAsAgreed) {
  EXPECT_EQ(commandExpression("vai", std::nullopt),
            "window.__orvalleComando && window.__orvalleComando('vai', null)");
  EXPECT_EQ(commandExpression("vai", "/mappa"),
            "window.__orvalleComando && window.__orvalleComando('vai', '/mappa')");
  EXPECT_EQ(commandExpression("vai", ""), "window.__orvalleComando && window.__orvalleComando('vai', '')");
  EXPECT_EQ(commandExpression("inattivo", "300"),
            "window.__orvalleComando && window.__orvalleComando('inattivo', '300')");
}

TEST_F(CommandExpressionTest, leavesPlainTextsAsTheyAre) {
  for (const auto& text : {"/settings?sezione=scorciatoie"s, "/settings?sezione=google&esito=a+b%20c"s,
                           "3f2a-51"s, "caffè • 🎯 \u202E\u2027\u202A"s, "null"s, "a<b>&c;(){}[]/*//`$"s}) {
    EXPECT_EQ(argument(text), "'" + text + "'");
  }
}

TEST_F(CommandExpressionTest, writesWhatCouldEndTheLiteralAsEscapes) {
  struct Row {
    std::string text;
    std::string literal;
  };
  for (const auto& row : {
           Row{"'", R"('\'')"},
           Row{"\"", R"('\"')"},
           Row{"\\", R"('\\')"},
           Row{"\\'", R"('\\\'')"},
           Row{"x');window.pwned=1;//", R"('x\');window.pwned=1;//')"},
           Row{"a\nb", R"('a\x0ab')"},
           Row{"a\rb", R"('a\x0db')"},
           Row{"a\tb", R"('a\x09b')"},
           Row{"a\0b"s, R"('a\x00b')"},
           Row{"a\0001"s, R"('a\x001')"},
           Row{"\x1F\x7F", R"('\x1f\x7f')"},
           Row{"\x20\x7E", "' ~'"},
           Row{"a\u2028b", R"('a\u2028b')"},
           Row{"a\u2029b", R"('a\u2029b')"},
       }) {
    EXPECT_EQ(argument(row.text), row.literal);
  }
}

TEST_F(CommandExpressionTest, quotesTheWordInTheSameWay) {
  EXPECT_EQ(commandExpression("a'b", std::nullopt),
            R"(window.__orvalleComando && window.__orvalleComando('a\'b', null))");
}

TEST_F(CommandExpressionTest, bringsAnEmptyTextForOneThatIsNotUtf8) {
  EXPECT_EQ(argument("\xFF"), "''");
  EXPECT_EQ(argument("good, then \xE2\x80"), "''");
}

}  // namespace
}  // namespace orvalle::web
