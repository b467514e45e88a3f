#include "base/liveness.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>

namespace orvalle::base {
namespace {

class LivenessTest : public ::testing::Test {};

TEST_F(LivenessTest, passesArgumentsOnWhileTheOwnerLives) {
  const Liveness liveness;
  std::string heard;
  const std::function<void(const std::string&, int)> guarded =
      liveness.guard([&](const std::string& word, int number) { heard += word + std::to_string(number); });
  guarded("a", 1);
  guarded("b", 2);
  EXPECT_EQ(heard, "a1b2");
}

TEST_F(LivenessTest, goesQuietOnceTheOwnerIsGone) {
  auto liveness = std::make_unique<Liveness>();
  int calls = 0;
  const std::function<void()> guarded = liveness->guard([&] { ++calls; });
  guarded();
  liveness.reset();
  guarded();
  EXPECT_EQ(calls, 1);
}

TEST_F(LivenessTest, handsMoveOnlyArgumentsOn) {
  const Liveness liveness;
  int heard = 0;
  auto guarded = liveness.guard([&](std::unique_ptr<int> number) { heard = *number; });
  guarded(std::make_unique<int>(7));
  EXPECT_EQ(heard, 7);
}

TEST_F(LivenessTest, keepsTheStateOfWhatItWraps) {
  const Liveness liveness;
  int last = 0;
  auto guarded = liveness.guard([&last, count = 0]() mutable { last = ++count; });
  guarded();
  guarded();
  EXPECT_EQ(last, 2);
}

TEST_F(LivenessTest, goesQuietBeforeTheMembersDeclaredAboveIt) {
  // What a member says as it goes must not reach an owner that is half gone.
  struct Owner {
    struct Member {
      std::function<void()> onGone;
      ~Member() { onGone(); }
    };
    Member member;
    Liveness liveness;
  };
  int calls = 0;
  {
    Owner owner;
    owner.member.onGone = owner.liveness.guard([&] { ++calls; });
  }
  EXPECT_EQ(calls, 0);
}

}  // namespace
}  // namespace orvalle::base
