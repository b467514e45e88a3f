#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/url.h"

namespace orvalle::base {

// How the test tool prints an item that differs.
void PrintTo(const QueryItem& item, std::ostream* out) {
  *out << item.name << (item.value ? "=" + *item.value : " without a value");
}

namespace {

using OptionalText = std::optional<std::string>;
using Items = std::vector<QueryItem>;

class UrlComponentsTest : public ::testing::Test {
 protected:
  static UrlComponents parsed(std::string_view text) {
    const auto parts = UrlComponents::parse(text);
    EXPECT_TRUE(parts) << text;
    return parts.value_or(UrlComponents{});
  }
  static std::optional<Items> itemsOf(std::string_view text) { return parsed(text).queryItems(); }
};

TEST_F(UrlComponentsTest, takesReferencesApart) {
  struct Row {
    std::string_view text;
    OptionalText scheme, authority;
    std::string path;
    OptionalText query, fragment;
  };
  for (const auto& row : {
           Row{"", {}, {}, "", {}, {}},
           Row{"https://app.example", "https", "app.example", "", {}, {}},
           Row{"https://app.example/", "https", "app.example", "/", {}, {}},
           Row{"HTTPS://u:p@App.Example:8443/a/b?c=d&e#f", "HTTPS", "u:p@App.Example:8443", "/a/b", "c=d&e",
               "f"},
           Row{"https://app.example?", "https", "app.example", "", "", {}},
           Row{"https://app.example#", "https", "app.example", "", {}, ""},
           Row{"https:///x", "https", "", "/x", {}, {}},
           Row{"//app.example", {}, "app.example", "", {}, {}},
           Row{"mailto:a@b.example", "mailto", {}, "a@b.example", {}, {}},
           Row{"localhost:4000", "localhost", {}, "4000", {}, {}},
           Row{"orvalle:google", "orvalle", {}, "google", {}, {}},
           Row{"a/b", {}, {}, "a/b", {}, {}},
           Row{"/a%20b", {}, {}, "/a%20b", {}, {}},
           Row{"?q", {}, {}, "", "q", {}},
           Row{"#f", {}, {}, "", {}, "f"},
       }) {
    const auto parts = parsed(row.text);
    EXPECT_EQ(parts.scheme, row.scheme) << row.text;
    EXPECT_EQ(parts.authority, row.authority) << row.text;
    EXPECT_EQ(parts.path, row.path) << row.text;
    EXPECT_EQ(parts.query, row.query) << row.text;
    EXPECT_EQ(parts.fragment, row.fragment) << row.text;
    EXPECT_EQ(parts.text(), row.text) << "put together again";
  }
}

TEST_F(UrlComponentsTest, refusesInvalidReferences) {
  for (const std::string_view text :
       {" ", "https://app example", "https://h:p/", "https://[::1/", "%", "è", "\n"}) {
    EXPECT_FALSE(UrlComponents::parse(text)) << text;
  }
}

TEST_F(UrlComponentsTest, splitsTheQueryIntoItems) {
  EXPECT_EQ(itemsOf("x:y"), std::nullopt);
  EXPECT_EQ(itemsOf("x:y?"), Items());
  EXPECT_EQ(itemsOf("x:y?a"), (Items{{"a", {}}}));
  EXPECT_EQ(itemsOf("x:y?a="), (Items{{"a", ""}}));
  EXPECT_EQ(itemsOf("x:y?=b"), (Items{{"", "b"}}));
  EXPECT_EQ(itemsOf("x:y?a=b"), (Items{{"a", "b"}}));
  EXPECT_EQ(itemsOf("x:y?a=b=c"), (Items{{"a", "b=c"}}));
  EXPECT_EQ(itemsOf("x:y?a=1&b&a=2&c="), (Items{{"a", "1"}, {"b", {}}, {"a", "2"}, {"c", ""}}));
  EXPECT_EQ(itemsOf("x:y?a=1&&b=2"), (Items{{"a", "1"}, {"", {}}, {"b", "2"}}));
  EXPECT_EQ(itemsOf("x:y?a=1#f"), (Items{{"a", "1"}}));
}

TEST_F(UrlComponentsTest, decodesItems) {
  EXPECT_EQ(itemsOf("x:y?a%20b=c%26d"), (Items{{"a b", "c&d"}}));
  EXPECT_EQ(itemsOf("x:y?v=%c3%A8%E2%80%A2"), (Items{{"v", "è•"}}));
  EXPECT_EQ(itemsOf("x:y?v=1+2"), (Items{{"v", "1+2"}}));
  EXPECT_EQ(itemsOf("x:y?v=%2B"), (Items{{"v", "+"}}));
  EXPECT_EQ(itemsOf("x:y?v=%00"), (Items{{"v", std::string(1, '\0')}}));
  EXPECT_EQ(itemsOf("x:y?v=%41%6F%5a"), (Items{{"v", "AoZ"}}));
}

TEST_F(UrlComponentsTest, leavesItemsWithoutAValueWhenTheyDoNotDecode) {
  EXPECT_EQ(itemsOf("x:y?v=%FF"), (Items{{"v", {}}}));
  EXPECT_EQ(itemsOf("x:y?v=%C3&w=1"), (Items{{"v", {}}, {"w", "1"}}));
  UrlComponents parts;
  for (const std::string bad : {"v=%", "v=%4", "v=%4g", "v=%g4", "v=a%"}) {
    parts.query = bad;
    EXPECT_EQ(parts.queryItems(), (Items{{"v", {}}})) << bad;
  }
}

TEST_F(UrlComponentsTest, writesItemsAsTheQuery) {
  auto parts = parsed("https://app.example/p?old=1#f");
  parts.setQueryItems({{"codice", "AB C&1+2"}, {"vuoto", ""}, {"niente", {}}});
  EXPECT_EQ(parts.text(), "https://app.example/p?codice=AB%20C%261+2&vuoto=&niente#f");
  parts.setQueryItems({});
  EXPECT_EQ(parts.text(), "https://app.example/p?#f");
}

TEST_F(UrlComponentsTest, putsChangedPartsTogether) {
  auto parts = parsed("http://user@app.example:4000/x?y#z");
  parts.scheme = "ws";
  parts.path = "/realtime";
  parts.query.reset();
  parts.fragment.reset();
  EXPECT_EQ(parts.text(), "ws://user@app.example:4000/realtime");
}

TEST_F(UrlComponentsTest, hasNoTextWhenThePartsDoNotFit) {
  UrlComponents parts;
  parts.authority = "app.example";
  parts.path = "without-slash";
  EXPECT_EQ(parts.text(), std::nullopt);

  UrlComponents twoSlashes;
  twoSlashes.path = "//looks/like/a/host";
  EXPECT_EQ(twoSlashes.text(), std::nullopt);

  UrlComponents colon;
  colon.path = "looks:like-a-scheme";
  EXPECT_EQ(colon.text(), std::nullopt);

  UrlComponents blank;
  blank.path = "/a b";
  EXPECT_EQ(blank.text(), std::nullopt);

  UrlComponents question;
  question.path = "/a?b";
  EXPECT_EQ(question.text(), std::nullopt);
}

}  // namespace
}  // namespace orvalle::base
