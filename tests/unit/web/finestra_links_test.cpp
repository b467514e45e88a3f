#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "tests/unit/web/finestra_fixture.h"

namespace orvalle::web {
namespace {

using platform::NavigationPolicy;

class FinestraLinksTest : public FinestraFixture {
 protected:
  FinestraLinksTest() { showPage(); }
  NavigationPolicy decide(std::optional<std::string> url, bool linkActivated) {
    return window().delegate->decidePolicy({std::move(url), linkActivated});
  }
  /// A click on a link to `url` opens it outside, and nothing else happens.
  void expectOutside(const std::string& url) {
    system.workspace.opened.clear();
    EXPECT_EQ(decide(url, true), NavigationPolicy::Cancel) << url;
    EXPECT_EQ(system.workspace.opened, Texts{url});
    EXPECT_EQ(window().loads.size(), 1u);
    EXPECT_TRUE(window().htmls.empty());
  }
  void expectInside(const std::string& url) {
    system.workspace.opened.clear();
    EXPECT_EQ(decide(url, true), NavigationPolicy::Allow) << url;
    EXPECT_TRUE(system.workspace.opened.empty()) << url;
  }
};

TEST_F(FinestraLinksTest, stayInsideOnTheApplicationsOwnHost) {
  expectInside("https://app.example/sprint");
  // The host alone is compared.
  expectInside("http://app.example/");
  expectInside("https://app.example:8443/");
  expectInside("https://user@app.example/");
  expectInside("ftp://app.example/file");
}

TEST_F(FinestraLinksTest, openOutsideOnAnyOtherHost) {
  expectOutside("https://other.example/");
  expectOutside("https://app.example.evil.example/");
  expectOutside("https://evil.example/app.example");
  expectOutside("https://app.example@evil.example/");
  expectOutside("https://sub.app.example/");
  expectOutside("https://example/");
}

TEST_F(FinestraLinksTest, compareHostsAsExactText) {
  expectOutside("https://App.Example/");
  setHome("https://App.Example/");
  expectInside("https://App.Example/");
  expectOutside("https://app.example/");
}

TEST_F(FinestraLinksTest, openOutsideWithoutAHost) {
  expectOutside("mailto:someone@app.example");
  expectOutside("tel:+39123");
  expectOutside("file:///etc/passwd");
  expectOutside("about:blank");
}

TEST_F(FinestraLinksTest, stayInsideWithWhateverABrowserLeavesAsItIs) {
  for (const char* path : {"/cerca?q=50%", "/x?f={1}", "/x?a|b^`", "/a[1]", "/#[x]|", "?%zz", "#%"})
    expectInside(std::string("https://app.example") + path);
}

TEST_F(FinestraLinksTest, openOutsideWhenTheyDoNotParse) {
  // Other programs read the last host here, not ours.
  expectOutside("https://x@app.example@evil.example/");
}

TEST_F(FinestraLinksTest, countTwoAbsentHostsAsEqual) {
  setHome("casa");
  expectInside("mailto:someone@app.example");
  expectInside("about:blank");
  expectOutside("https://app.example/");
}

TEST_F(FinestraLinksTest, countTwoAbsentHostsAsEqualOnlyWhenTheLinkParses) {
  setHome("casa");
  expectOutside("https://[/");
}

TEST_F(FinestraLinksTest, followTheAddressAsItIsNow) {
  expectOutside("https://new.example/");
  setHome("https://new.example/");
  expectInside("https://new.example/");
  expectOutside("https://app.example/");
}

TEST_F(FinestraLinksTest, areLeftAloneWithoutAnAddress) {
  EXPECT_EQ(decide(std::nullopt, true), NavigationPolicy::Allow);
  EXPECT_EQ(decide(std::nullopt, false), NavigationPolicy::Allow);
  EXPECT_TRUE(system.workspace.opened.empty());
}

TEST_F(FinestraLinksTest, areTheOnlyNavigationsThatGoOutside) {
  // Scripts, forms, reloads, back and forward stay in the view wherever they go.
  for (const std::string url :
       {"https://other.example/", "mailto:a@b.example", "https://app.example/", "a b"}) {
    EXPECT_EQ(decide(url, false), NavigationPolicy::Allow) << url;
  }
  EXPECT_TRUE(system.workspace.opened.empty());
}

}  // namespace
}  // namespace orvalle::web
