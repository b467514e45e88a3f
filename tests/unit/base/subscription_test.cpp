#include "base/subscription.h"

#include <gtest/gtest.h>

#include <utility>

namespace orvalle::base {
namespace {

class SubscriptionTest : public ::testing::Test {
 protected:
  Subscription counted() {
    return Subscription([this] { ++cancels; });
  }
  int cancels = 0;
};

TEST_F(SubscriptionTest, cancelsOnceWhenDestroyed) {
  {
    const auto subscription = counted();
    EXPECT_EQ(cancels, 0);
  }
  EXPECT_EQ(cancels, 1);
}

TEST_F(SubscriptionTest, cancelsOnceWhenResetAndThenDestroyed) {
  {
    auto subscription = counted();
    subscription.reset();
    EXPECT_EQ(cancels, 1);
    subscription.reset();
  }
  EXPECT_EQ(cancels, 1);
}

TEST_F(SubscriptionTest, movesItsRightToTheNewOne) {
  auto first = counted();
  {
    const Subscription second = std::move(first);
    EXPECT_FALSE(first);  // NOLINT(bugprone-use-after-move): what is left is the point
    EXPECT_TRUE(second);
    first.reset();
    EXPECT_EQ(cancels, 0);
  }
  EXPECT_EQ(cancels, 1);
}

TEST_F(SubscriptionTest, cancelsWhatItHeldWhenAssigned) {
  int others = 0;
  auto subscription = counted();
  subscription = Subscription([&] { ++others; });
  EXPECT_EQ(cancels, 1);
  EXPECT_EQ(others, 0);
  subscription = Subscription();
  EXPECT_EQ(others, 1);
  EXPECT_EQ(cancels, 1);
}

TEST_F(SubscriptionTest, survivesAssignmentToItself) {
  auto subscription = counted();
  auto& same = subscription;
  subscription = std::move(same);
  EXPECT_TRUE(subscription);
  EXPECT_EQ(cancels, 0);
}

TEST_F(SubscriptionTest, doesNothingWhenEmpty) {
  Subscription empty;
  EXPECT_FALSE(empty);
  empty.reset();
}

TEST_F(SubscriptionTest, mayBeResetFromItsOwnCancellation) {
  Subscription subscription;
  subscription = Subscription([&] {
    ++cancels;
    subscription.reset();
  });
  subscription.reset();
  EXPECT_EQ(cancels, 1);
}

}  // namespace
}  // namespace orvalle::base
