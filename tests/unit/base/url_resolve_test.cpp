#include <gtest/gtest.h>

#include "base/url.h"

namespace orvalle::base {
namespace {

std::string resolved(std::string_view reference, std::string_view home) {
  const auto url = resolve(reference, Url::parse(home).value());
  return url ? url->text() : "-";
}

TEST(UrlResolve, followsTheStandardsExamples) {
  constexpr std::string_view kHome = "http://a/b/c/d;p?q";
  for (const auto& [reference, expected] :
       std::initializer_list<std::pair<std::string_view, std::string>>{{"g", "http://a/b/c/g"},
                                                                       {"./g", "http://a/b/c/g"},
                                                                       {"g/", "http://a/b/c/g/"},
                                                                       {"/g", "http://a/g"},
                                                                       {"//g", "http://g"},
                                                                       {"?y", "http://a/b/c/d;p?y"},
                                                                       {"g?y", "http://a/b/c/g?y"},
                                                                       {"#s", "http://a/b/c/d;p?q#s"},
                                                                       {"..", "http://a/b/"},
                                                                       {"../g", "http://a/b/g"},
                                                                       {"../..", "http://a/"},
                                                                       {"../../../g", "http://a/g"},
                                                                       {"/./g", "http://a/g"},
                                                                       {"/../g", "http://a/g"},
                                                                       {"g;x=1/../y", "http://a/b/c/y"}}) {
    EXPECT_EQ(resolved(reference, kHome), expected) << reference;
  }
}

TEST(UrlResolve, keepsAnAddressOfItsOwnAsItIs) {
  EXPECT_EQ(resolved("HTTPS://B/x/../Y", "http://a/"), "HTTPS://B/x/../Y");
  EXPECT_EQ(resolved("g:h", "http://a/"), "g:h");
  EXPECT_EQ(resolved("https://b/x", "relativo"), "https://b/x");
}

TEST(UrlResolve, takesPlaceSchemeAndPortFromHome) {
  EXPECT_EQ(resolved("/mac/versione.json", "http://user@localhost:4717/app/?a=1#b"),
            "http://user@localhost:4717/mac/versione.json");
  EXPECT_EQ(resolved("//altrove/x", "https://qui:1/"), "https://altrove/x");
}

TEST(UrlResolve, isAbsentWithoutAnAddress) {
  EXPECT_EQ(resolved("", "http://a/"), "-");
  EXPECT_EQ(resolved("con blanco", "http://a/"), "-");
  EXPECT_EQ(resolved("/x", "relativo"), "-");
}

}  // namespace
}  // namespace orvalle::base
