#include "app/deep_links.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>

namespace orvalle::app {
namespace {

using namespace std::string_view_literals;
using OptionalText = std::optional<std::string>;

/// The route that a link leads to; absent when it is no return from Google.
OptionalText route(std::string_view link) {
  const auto read = readDeepLink(link, base::Url::parse("https://app.example/").value());
  const auto* google = read ? std::get_if<GoogleReturn>(&*read) : nullptr;
  return google ? OptionalText(google->path) : std::nullopt;
}

/// The address that a link signs in at; absent when it is no sign-in link.
OptionalText address(std::string_view link, std::string_view home = "https://app.example/") {
  const auto read = readDeepLink(link, base::Url::parse(home).value());
  const auto* signIn = read ? std::get_if<SignIn>(&*read) : nullptr;
  return signIn ? OptionalText(signIn->address.text()) : std::nullopt;
}

bool ignored(std::string_view link) {
  return !readDeepLink(link, base::Url::parse("https://app.example/").value());
}

constexpr char kOk[] = "/settings?sezione=google&esito=ok";

TEST(DeepLinksTest, googleWithoutAQueryWentWell) {
  EXPECT_EQ(route("orvalle://google"), kOk);
  EXPECT_EQ(route("orvalle://google?"), kOk);
}

TEST(DeepLinksTest, googleTellsItsOutcomeAndNothingElse) {
  EXPECT_EQ(route("orvalle://google?esito=errore&x=1"), "/settings?sezione=google&esito=errore");
  EXPECT_EQ(route("orvalle://google?x=1&esito=errore"), "/settings?sezione=google&esito=errore");
}

TEST(DeepLinksTest, googleWithoutAnOutcomeOrItsValueWentWell) {
  EXPECT_EQ(route("orvalle://google?esito"), kOk);
  EXPECT_EQ(route("orvalle://google?esito&esito=errore"), kOk);
  EXPECT_EQ(route("orvalle://google?x=1"), kOk);
  EXPECT_EQ(route("orvalle://google?Esito=errore"), kOk);
}

TEST(DeepLinksTest, googleKeepsAnEmptyOutcome) {
  EXPECT_EQ(route("orvalle://google?esito="), "/settings?sezione=google&esito=");
}

TEST(DeepLinksTest, googleTakesTheFirstOutcome) {
  EXPECT_EQ(route("orvalle://google?esito=a&esito=b"), "/settings?sezione=google&esito=a");
}

TEST(DeepLinksTest, googleEncodesTheOutcomeAnew) {
  EXPECT_EQ(route("orvalle://google?esito=a%20b+c%2Bd"), "/settings?sezione=google&esito=a%20b+c+d");
  EXPECT_EQ(route("orvalle://google?esito=a%26b%3Dc%23d%25"),
            "/settings?sezione=google&esito=a%26b%3Dc%23d%25");
  EXPECT_EQ(route("orvalle://google?esito=%c3%a8"), "/settings?sezione=google&esito=%C3%A8");
  EXPECT_EQ(route("orvalle://google?es%69to=errore"), "/settings?sezione=google&esito=errore");
  EXPECT_EQ(route("orvalle://google?esito=a=b"), "/settings?sezione=google&esito=a%3Db");
}

TEST(DeepLinksTest, googleLeavesNoApostropheInTheRoute) {
  EXPECT_EQ(route("orvalle://google?esito=x');window.pwned=1;//"),
            "/settings?sezione=google&esito=x%27);window.pwned%3D1;//");
  EXPECT_EQ(route("orvalle://google?esito=%27%27%5C%0A"), "/settings?sezione=google&esito=%27%27%5C%0A");
}

TEST(DeepLinksTest, googleWithAnOutcomeThatIsNoTextWentWell) {
  EXPECT_EQ(route("orvalle://google?esito=%FF"), kOk);
}

TEST(DeepLinksTest, pathFragmentUserAndPortAreNotLookedAt) {
  EXPECT_EQ(route("orvalle://google/altro/../posto?esito=x"), "/settings?sezione=google&esito=x");
  EXPECT_EQ(route("orvalle://google#esito=x"), kOk);
  EXPECT_EQ(route("orvalle://chiunque@google:1?esito=x"), "/settings?sezione=google&esito=x");
  EXPECT_EQ(address("orvalle://accesso/x/y?codice=A"), "https://app.example/api/mac/entra?codice=A");
}

TEST(DeepLinksTest, signInExchangesTheCodeAtTheWebApplication) {
  EXPECT_EQ(address("orvalle://accesso?codice=ABC123"), "https://app.example/api/mac/entra?codice=ABC123");
}

TEST(DeepLinksTest, signInKeepsTheCodeAsItIs) {
  EXPECT_EQ(address("orvalle://accesso?codice=a+b"), "https://app.example/api/mac/entra?codice=a+b");
  EXPECT_EQ(address("orvalle://accesso?codice=a%20b%26c%3Dd%2f"),
            "https://app.example/api/mac/entra?codice=a%20b%26c%3Dd/");
  EXPECT_EQ(address("orvalle://accesso?codice=aBcD"), "https://app.example/api/mac/entra?codice=aBcD");
  EXPECT_EQ(address("orvalle://accesso?codice="), "https://app.example/api/mac/entra?codice=");
}

TEST(DeepLinksTest, signInTakesTheFirstCodeAndNothingElse) {
  EXPECT_EQ(address("orvalle://accesso?x=1&codice=A&codice=B"), "https://app.example/api/mac/entra?codice=A");
}

TEST(DeepLinksTest, signInWithoutACodeDoesNothing) {
  for (const auto link :
       {"orvalle://accesso", "orvalle://accesso?", "orvalle://accesso?code=A", "orvalle://accesso?Codice=A",
        "orvalle://accesso?codice", "orvalle://accesso?codice=%FF", "orvalle://accesso?codice&codice=A",
        "orvalle://accesso#codice=A"})
    EXPECT_TRUE(ignored(link)) << link;
}

TEST(DeepLinksTest, signInKeepsSchemeHostAndPortOfTheAddressAlone) {
  EXPECT_EQ(address("orvalle://accesso?codice=A", "http://localhost:4717/a/b?c=d"),
            "http://localhost:4717/api/mac/entra?codice=A");
  EXPECT_EQ(address("orvalle://accesso?codice=A", "https://App.Example:8443"),
            "https://App.Example:8443/api/mac/entra?codice=A");
  EXPECT_EQ(address("orvalle://accesso?codice=A", "https://[::1]/"), "https://[::1]/api/mac/entra?codice=A");
}

TEST(DeepLinksTest, signInReachesNoOtherHostOrPath) {
  for (const auto link :
       {"orvalle://accesso?codice=@evil.example/", "orvalle://accesso?codice=//evil.example",
        "orvalle://evil.example@accesso?codice=x", "orvalle://accesso/evil?codice=../../x",
        "orvalle://accesso?codice=x%0d%0aHost:evil", "orvalle://accesso?codice=x%23%26a%3Db"}) {
    const auto target = address(link);
    ASSERT_TRUE(target) << link;
    const auto parts = base::UrlComponents::parse(*target);
    ASSERT_TRUE(parts) << *target;
    EXPECT_EQ(parts->scheme, "https");
    EXPECT_EQ(parts->authority, "app.example");
    EXPECT_EQ(parts->path, "/api/mac/entra");
    EXPECT_FALSE(parts->fragment);
    EXPECT_EQ(parts->queryItems()->size(), 1U);
  }
}

TEST(DeepLinksTest, otherSchemesAreLeftAloneWhateverTheHost) {
  for (const auto link :
       {"https://google?esito=x", "https://accesso?codice=A", "ORVALLE://google", "Orvalle://accesso",
        "orvalle2://google", "//google", "google", "file:///google", "javascript:google"})
    EXPECT_TRUE(ignored(link)) << link;
}

TEST(DeepLinksTest, otherHostsAreLeftAlone) {
  for (const auto link :
       {"orvalle://", "orvalle:", "orvalle:google", "orvalle:/google", "orvalle:///google",
        "orvalle://Google", "orvalle://GOOGLE", "orvalle://google.evil.example", "orvalle://accesso.",
        "orvalle://Accesso?codice=A", "orvalle://impostazioni", "orvalle://goo%67le"})
    EXPECT_TRUE(ignored(link)) << link;
}

TEST(DeepLinksTest, whatIsNoUrlIsLeftAlone) {
  for (const auto link :
       {""sv, " orvalle://google"sv, "orvalle://google "sv, "orvalle://google?esito=a b"sv,
        "orvalle://google?esito=è"sv, "orvalle://google?esito=%"sv, "orvalle://google?esito=%zz"sv,
        "orvalle://google\n"sv, "orvalle://google?esito=\0"sv, "orvalle://google?esito=\xFF"sv,
        "orvalle://google:x"sv, "orvalle://[google"sv, "orvalle://google?esito=\"x\""sv,
        "orvalle://google\\x"sv})
    EXPECT_TRUE(ignored(link)) << ::testing::PrintToString(std::string(link));
}

}  // namespace
}  // namespace orvalle::app
