#include "web/page_trust.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace orvalle::web {
namespace {

constexpr char kOwn[] = "app.example";

class PageTrustTest : public ::testing::Test {
 protected:
  /// The application loads `url`, and the server sends the view on to `redirectedTo`.
  void load(const std::string& url, const std::optional<std::string>& redirectedTo = {}) {
    trust.willLoad(url);
    trust.didStart(url);
    trust.didCommit(redirectedTo.value_or(url));
  }
  /// The page goes to `url` by itself, with the same possible redirect.
  void move(const std::string& url, const std::optional<std::string>& redirectedTo = {}) {
    trust.didStart(url);
    trust.didCommit(redirectedTo.value_or(url));
  }
  bool serves() const { return trust.serves(kOwn); }

  PageTrust trust;
};

TEST_F(PageTrustTest, servesNothingBeforeADocumentIsShown) {
  EXPECT_FALSE(serves());
  EXPECT_FALSE(trust.serves(std::nullopt));
  trust.willLoad("https://app.example/");
  trust.didStart("https://app.example/");
  EXPECT_FALSE(serves());
}

TEST_F(PageTrustTest, servesTheApplicationsOwnHost) {
  load("https://app.example/");
  EXPECT_TRUE(serves());
  move("https://app.example/sprint");
  EXPECT_TRUE(serves());
  // The host alone counts.
  move("http://user@app.example:8080/x");
  EXPECT_TRUE(serves());
}

TEST_F(PageTrustTest, servesItWithWhateverABrowserLeavesAsItIs) {
  load("https://app.example/");
  move("https://app.example/cerca?q=50%&f={1}#[x]|");
  EXPECT_TRUE(serves());
  load("https://altrove.example/?q=50%");
  EXPECT_TRUE(serves());
}

TEST_F(PageTrustTest, servesNoHostThatAScriptWentTo) {
  load("https://app.example/");
  for (const std::string url :
       {"https://evil.example/", "https://app.example.evil.example/", "https://app.example@evil.example/",
        "https://evil.example/app.example", "https://evil.example#app.example", "https://sub.app.example/"}) {
    move(url);
    EXPECT_FALSE(serves()) << url;
  }
}

TEST_F(PageTrustTest, servesAgainWhenTheApplicationIsBack) {
  load("https://app.example/");
  move("https://evil.example/");
  move("https://app.example/");
  EXPECT_TRUE(serves());
  move("https://evil.example/");
  load("https://app.example/");
  EXPECT_TRUE(serves());
}

TEST_F(PageTrustTest, doesNotServeAHostThatAScriptReachedThroughOurs) {
  load("https://app.example/");
  move("https://app.example/out", "https://evil.example/");
  EXPECT_FALSE(serves());
}

TEST_F(PageTrustTest, servesAHostThatTheApplicationLoaded) {
  load("https://other.example/");
  EXPECT_TRUE(serves());
  move("https://other.example/next");
  EXPECT_TRUE(serves());
  load("https://app.example/");
  move("https://other.example/");
  EXPECT_TRUE(serves());
}

TEST_F(PageTrustTest, servesTheHostThatTheServerSentOurLoadTo) {
  load("https://app.example/", "https://login.example/");
  EXPECT_TRUE(serves());
  move("https://evil.example/");
  EXPECT_FALSE(serves());
  move("https://login.example/again");
  EXPECT_TRUE(serves());
}

TEST_F(PageTrustTest, keepsTellingWhoseLoadItIsWhenThePagesOwnComesFirst) {
  load("https://app.example/");
  trust.willLoad("https://app.example/api/mac/entra");
  // The page had started to move just before ours was asked for.
  move("https://evil.example/");
  EXPECT_FALSE(serves());
  trust.didStart("https://app.example/api/mac/entra");
  trust.didCommit("https://login.example/");
  EXPECT_TRUE(serves());
  move("https://evil.example/");
  EXPECT_FALSE(serves());
}

TEST_F(PageTrustTest, doesNotTakeAScriptsLoadForOursThatItReplaced) {
  load("https://app.example/");
  trust.willLoad("https://app.example/");
  trust.didStart("https://app.example/");
  // Before it is shown the page goes elsewhere.
  move("https://evil.example/");
  EXPECT_FALSE(serves());
}

TEST_F(PageTrustTest, countsALoadAsOursOnce) {
  load("https://app.example/");
  // A later load by the page to the same place is the page's own.
  move("https://app.example/", "https://evil.example/");
  EXPECT_FALSE(serves());
}

TEST_F(PageTrustTest, doesNotServeTheOfflinePage) {
  load("https://app.example/");
  trust.didCommit("about:blank");
  EXPECT_FALSE(serves());
  move("https://app.example/");
  EXPECT_TRUE(serves());
}

TEST_F(PageTrustTest, forgetsALoadThatEndedInTheOfflinePage) {
  trust.willLoad("https://app.example/");
  trust.didStart("https://app.example/");
  trust.didCommit("about:blank");
  // A document that comes by itself afterwards is not ours.
  trust.didCommit("https://evil.example/");
  EXPECT_FALSE(serves());
}

TEST_F(PageTrustTest, servesNoDocumentWithoutAHostEvenWhenTheAddressHasNoneEither) {
  load("https://app.example/");
  for (const std::string url : {"about:blank", "data:text/html,x", "file:///etc/passwd", "a b", ""}) {
    move(url);
    EXPECT_FALSE(serves()) << url;
    EXPECT_FALSE(trust.serves(std::nullopt)) << url;
  }
  trust.willLoad("casa");
  trust.didStart("casa");
  trust.didCommit("casa");
  EXPECT_FALSE(trust.serves(std::nullopt));
}

TEST_F(PageTrustTest, doesNotTakeALoadWithoutAHostForOurs) {
  // Neither load has a host: that does not make the page's ours.
  trust.willLoad("casa");
  move("about:blank", "https://evil.example/");
  EXPECT_FALSE(serves());
}

TEST_F(PageTrustTest, comparesHostsWithoutRegardToCase) {
  // The view writes them in lower case, whatever was asked for.
  trust.willLoad("https://Other.Example/");
  trust.didStart("https://other.example/");
  trust.didCommit("https://other.example/");
  EXPECT_TRUE(serves());
  move("https://APP.example/");
  EXPECT_TRUE(serves());
  move("https://app.example/");
  EXPECT_TRUE(trust.serves("APP.Example"));
}

TEST_F(PageTrustTest, followsTheAddressAsItIsNow) {
  load("https://app.example/");
  move("https://new.example/");
  EXPECT_FALSE(trust.serves("app.example"));
  EXPECT_TRUE(trust.serves("new.example"));
}

}  // namespace
}  // namespace orvalle::web
