#include "base/text.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace orvalle::base {
namespace {

using namespace std::string_view_literals;

class TextTest : public ::testing::Test {};

TEST_F(TextTest, acceptsWellFormedUtf8) {
  for (const auto text : {""sv, "plain"sv, "\0"sv, "a\0b"sv, "\x7F"sv, "\xC2\x80"sv, "\xDF\xBF"sv,
                          "\xE0\xA0\x80"sv, "\xED\x9F\xBF"sv, "\xEE\x80\x80"sv, "\xEF\xBF\xBF"sv,
                          "\xF0\x90\x80\x80"sv, "\xF4\x8F\xBF\xBF"sv, "caffè • «Abbina…» ′ 🎯"sv}) {
    EXPECT_TRUE(isValidUtf8(text)) << ::testing::PrintToString(std::string(text));
  }
}

TEST_F(TextTest, refusesWhatIsNotUtf8) {
  for (const auto text : {
           "\x80"sv,              // a continuation with nothing before it
           "\xC3"sv,              // cut short
           "\xE2\x80"sv,          // cut short
           "\xF0\x9F\x8E"sv,      // cut short
           "\xC3("sv,             // no continuation after a first byte
           "\xC0\x80"sv,          // overlong
           "\xC1\xBF"sv,          // overlong
           "\xE0\x9F\xBF"sv,      // overlong
           "\xF0\x8F\xBF\xBF"sv,  // overlong
           "\xED\xA0\x80"sv,      // surrogate
           "\xED\xBF\xBF"sv,      // surrogate
           "\xF4\x90\x80\x80"sv,  // above U+10FFFF
           "\xF8\x88\x80\x80\x80"sv,
           "\xFE"sv,
           "\xFF"sv,
           "good, then \xFF bad"sv,
       }) {
    EXPECT_FALSE(isValidUtf8(text)) << ::testing::PrintToString(std::string(text));
  }
}

TEST_F(TextTest, putsAReplacementForEachByteThatIsNotUtf8) {
  struct Row {
    std::string_view text;
    std::string_view whole;
  };
  for (const auto& row : {
           Row{"", ""},
           Row{"caffè 🎯", "caffè 🎯"},
           Row{"a\0b"sv, "a\0b"sv},
           Row{"\xFF", "\uFFFD"},
           Row{"a\x80\xFF z", "a\uFFFD\uFFFD z"},
           Row{"cut \xF0\x9F\x8E", "cut \uFFFD\uFFFD\uFFFD"},
           Row{"\xED\xA0\x80!", "\uFFFD\uFFFD\uFFFD!"},
           Row{"\xC3(è", "\uFFFD(è"},
       }) {
    EXPECT_EQ(wellFormed(row.text), row.whole) << ::testing::PrintToString(std::string(row.text));
  }
}

TEST_F(TextTest, turnsEachLineBreakIntoOneBlank) {
  struct Row {
    std::string_view text;
    std::string_view line;
  };
  for (const auto& row : {
           Row{"", ""},
           Row{"one line", "one line"},
           Row{"a\nb", "a b"},
           Row{"a\rb", "a b"},
           Row{"a\r\nb", "a b"},
           Row{"a\n\rb", "a  b"},
           Row{"a\n\nb", "a  b"},
           Row{"a\vb\fc", "a b c"},
           Row{"a\u0085b", "a b"},
           Row{"a\u2028b\u2029c", "a b c"},
           Row{"\n", " "},
           Row{"a\r\n", "a "},
           Row{"tab\tstays", "tab\tstays"},
           // Neighbours of the separators in the table of characters are ordinary text.
           Row{"a\u0084b\u2027c\u202A", "a\u0084b\u2027c\u202A"},
           // Bytes that are no text pass through.
           Row{"a\xC2", "a\xC2"},
           Row{"a\xE2\x80", "a\xE2\x80"},
       }) {
    EXPECT_EQ(onOneLine(row.text), row.line) << ::testing::PrintToString(std::string(row.text));
  }
}

using Characters = std::vector<std::string_view>;

Characters characters(std::string_view text) {
  Characters found;
  for (; !text.empty(); text.remove_prefix(found.back().size())) {
    found.push_back(firstCharacter(text));
    if (found.back().empty()) throw std::runtime_error("no character");
  }
  return found;
}

TEST_F(TextTest, countsCharactersAsAReaderDoes) {
  struct Row {
    std::string_view text;
    Characters characters;
  };
  for (const auto& row : {
           Row{"", {}},
           Row{"abc", {"a", "b", "c"}},
           Row{"è•🎯", {"è", "•", "🎯"}},
           Row{"e\u0301x", {"e\u0301", "x"}},
           Row{"a\r\nb", {"a", "\r\n", "b"}},
           Row{"\r\r\n\n", {"\r", "\r\n", "\n"}},
           Row{",\u0301,\uFE0F,\u200D,", {",\u0301", ",\uFE0F", ",\u200D", ","}},
           Row{"👩\u200D💻👍🏽", {"👩\u200D💻", "👍🏽"}},
           Row{"🇮🇹🇫🇷🇮", {"🇮🇹", "🇫🇷", "🇮"}},
           Row{"a\xFF\u0301\xC3", {"a", "\xFF", "\u0301", "\xC3"}},
       }) {
    EXPECT_EQ(characters(row.text), row.characters) << ::testing::PrintToString(std::string(row.text));
  }
  EXPECT_EQ(characters("a\0b"sv), (Characters{"a", "\0"sv, "b"}));
  EXPECT_EQ(firstCharacter(""), "");
}

TEST_F(TextTest, takesWhiteSpaceFromBothEnds) {
  struct Row {
    std::string_view text;
    std::string_view rest;
  };
  for (const auto& row : {
           Row{"", ""},
           Row{" ", ""},
           Row{" \t\r\n\v\f", ""},
           Row{"abc", "abc"},
           Row{"  a b\n c  ", "a b\n c"},
           Row{"\u00A0\u0085\u2028\u2029\u3000a\u202F\u2003", "a"},
           Row{"a ", "a"},
           Row{" a", "a"},
           // These look like nothing, but are no white space.
           Row{"\u200Ba\u200B", "\u200Ba\u200B"},
           Row{"\uFEFFa", "\uFEFFa"},
           Row{" \xFF ", "\xFF"},
           Row{" \x85\x80\x80\x80\x80 ", "\x85\x80\x80\x80\x80"},
           Row{"\xC2\xA0\xC2", "\xC2"},
       }) {
    EXPECT_EQ(trimmed(row.text), row.rest) << ::testing::PrintToString(std::string(row.text));
  }
  EXPECT_EQ(trimmed(" \0 "sv), "\0"sv);
}

}  // namespace
}  // namespace orvalle::base
