#include <gtest/gtest.h>

#include "tests/contract/web_window_rigs.h"

namespace orvalle::contract {
namespace {

using Events = std::vector<std::string>;

template <typename Rig>
class WebWindowContract : public ::testing::Test {
 protected:
  Events& events() { return rig.owner.events; }

  Rig rig;
  std::unique_ptr<platform::WebWindow> window = rig.make();
};

using Rigs = ::testing::Types<MemoryWebWindowRig, NativeWebWindowRig>;
TYPED_TEST_SUITE(WebWindowContract, Rigs);

TYPED_TEST(WebWindowContract, hasNoPageAtFirst) {
  EXPECT_FALSE(this->window->hasPage());
  EXPECT_EQ(this->events(), Events());
}

TYPED_TEST(WebWindowContract, hasPageOnceALoadHasCommitted) {
  const auto url = this->rig.goodUrl();
  this->window->load(url);
  EXPECT_FALSE(this->window->hasPage());
  this->rig.letLoadSucceed();
  EXPECT_TRUE(this->window->hasPage());
  EXPECT_EQ(this->events(), (Events{"start " + url, "commit " + url}));
}

TYPED_TEST(WebWindowContract, tellsOnceWhenThePageHasLoaded) {
  this->window->load(this->rig.goodUrl());
  this->rig.letLoadSucceed();
  EXPECT_EQ(this->rig.owner.finished, 0);
  this->rig.letPageLoad();
  EXPECT_EQ(this->rig.owner.finished, 1);
}

TYPED_TEST(WebWindowContract, givenDocumentIsNoPageAndDoesNotStart) {
  this->window->loadHtml("<p>Ecco</p>");
  this->rig.letHtmlShow();
  EXPECT_FALSE(this->window->hasPage());
  EXPECT_EQ(this->events(), Events{"commit about:blank"});
}

TYPED_TEST(WebWindowContract, pageMayGoElsewhereByItself) {
  const auto url = this->rig.otherUrl();
  this->window->load(this->rig.goodUrl());
  this->rig.letLoadSucceed();
  this->events().clear();
  this->rig.navigateByScript(*this->window, url);
  EXPECT_EQ(this->events(), (Events{"start " + url, "commit " + url}));
  EXPECT_TRUE(this->window->hasPage());
}

TYPED_TEST(WebWindowContract, givenDocumentTakesThePlaceOfThePageAndAPageThatOfTheDocument) {
  this->window->load(this->rig.goodUrl());
  this->rig.letLoadSucceed();
  this->window->loadHtml("<p>Ecco</p>");
  this->rig.letHtmlShow();
  EXPECT_FALSE(this->window->hasPage());
  this->events().clear();
  const auto url = this->rig.otherUrl();
  this->window->load(url);
  this->rig.letLoadSucceed();
  EXPECT_TRUE(this->window->hasPage());
  EXPECT_EQ(this->events(), (Events{"start " + url, "commit " + url}));
}

TYPED_TEST(WebWindowContract, failureIsToldOnceAndDescribed) {
  const auto url = this->rig.deadUrl();
  this->window->load(url);
  this->rig.letLoadFail();
  EXPECT_FALSE(this->window->hasPage());
  EXPECT_EQ(this->events(), (Events{"start " + url, "fail"}));
  ASSERT_EQ(this->rig.owner.descriptions.size(), 1U);
  EXPECT_NE(this->rig.owner.descriptions[0], "");
}

TYPED_TEST(WebWindowContract, pageIsStillThereAfterAFailure) {
  this->window->load(this->rig.goodUrl());
  this->rig.letLoadSucceed();
  this->window->load(this->rig.deadUrl());
  this->rig.letLoadFail();
  EXPECT_TRUE(this->window->hasPage());
}

TYPED_TEST(WebWindowContract, messagesArriveAsJson) {
  this->window->load(this->rig.goodUrl());
  this->rig.letLoadSucceed();
  this->events().clear();
  this->rig.post(*this->window, R"({"a":[1,true,null,"è\n"]})");
  EXPECT_EQ(this->events(), Events{R"(message orvalle {"a":[1,true,null,"è\n"]})"});
}

TYPED_TEST(WebWindowContract, stripCountsPressesInARow) {
  std::vector<int> counts;
  this->window->strip().onMouseDown = [&](int count) { counts.push_back(count); };
  this->rig.press(3);
  EXPECT_EQ(counts, (std::vector<int>{1, 2, 3}));
}

}  // namespace
}  // namespace orvalle::contract
