#include "platform/memory/virtual_time.h"

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace orvalle::platform::memory {
namespace {

using namespace std::chrono_literals;

class VirtualTimeTest : public ::testing::Test {
 protected:
  std::function<void()> note(std::string word) {
    return [this, word = std::move(word)] { heard.push_back(word); };
  }
  using Words = std::vector<std::string>;

  VirtualTime time;
  Words heard;
};

TEST_F(VirtualTimeTest, standsStillUntilItIsTold) {
  const auto start = time.now();
  const auto timer = time.after(0ms, note("a"));
  time.post(note("b"));
  EXPECT_TRUE(heard.empty());
  EXPECT_EQ(time.now(), start);
  EXPECT_EQ(VirtualTime().now(), start);
}

TEST_F(VirtualTimeTest, movesTheWallClockByWhatPasses) {
  const auto start = time.now();
  time.advance(1500ms);
  EXPECT_EQ(time.now() - start, 1500ms);
  time.advance(1ns);
  EXPECT_EQ(time.now() - start, 1500ms + 1ns);
}

TEST_F(VirtualTimeTest, runsATimerOnceWhenItIsDue) {
  const auto timer = time.after(10ms, note("a"));
  time.advance(10ms - 1ns);
  EXPECT_TRUE(heard.empty());
  time.advance(1ns);
  EXPECT_EQ(heard, Words{"a"});
  time.advance(1h);
  EXPECT_EQ(heard, Words{"a"});
  EXPECT_EQ(time.timerCount(), 0u);
}

TEST_F(VirtualTimeTest, runsTimersInTheOrderOfTheirDueTimes) {
  const auto c = time.after(30ms, note("c"));
  const auto a = time.after(10ms, note("a"));
  const auto b = time.after(20ms, note("b"));
  time.advance(1s);
  EXPECT_EQ(heard, (Words{"a", "b", "c"}));
}

TEST_F(VirtualTimeTest, runsTimersDueTogetherInTheOrderTheyWereRegistered) {
  const auto a = time.after(10ms, note("a"));
  const auto b = time.every(5ms, note("b"));
  const auto c = time.after(10ms, note("c"));
  time.advance(10ms);
  EXPECT_EQ(heard, (Words{"b", "a", "b", "c"}));
}

TEST_F(VirtualTimeTest, showsEachTimerItsOwnMoment) {
  const auto start = time.now();
  std::vector<std::chrono::nanoseconds> moments;
  const auto see = [&] { moments.push_back(time.now() - start); };
  const auto a = time.after(10ms, see);
  const auto b = time.every(4ms, see);
  time.advance(11ms);
  EXPECT_EQ(moments, (std::vector<std::chrono::nanoseconds>{4ms, 8ms, 10ms}));
  EXPECT_EQ(time.now() - start, 11ms);
}

TEST_F(VirtualTimeTest, repeatsEveryInterval) {
  const auto timer = time.every(3s, note("a"));
  time.advance(2999ms);
  EXPECT_EQ(heard.size(), 0u);
  time.advance(1ms);
  EXPECT_EQ(heard.size(), 1u);
  time.advance(9s);
  EXPECT_EQ(heard.size(), 4u);
  EXPECT_EQ(time.timerCount(), 1u);
}

TEST_F(VirtualTimeTest, stopsATimerWhoseSubscriptionIsGone) {
  auto once = time.after(1s, note("once"));
  auto repeated = time.every(1s, note("repeated"));
  EXPECT_EQ(time.timerCount(), 2u);
  once.reset();
  EXPECT_EQ(time.timerCount(), 1u);
  time.advance(1s);
  repeated.reset();
  time.advance(1h);
  EXPECT_EQ(heard, Words{"repeated"});
  EXPECT_EQ(time.timerCount(), 0u);
}

TEST_F(VirtualTimeTest, letsATimerStopItselfAndOthers) {
  base::Subscription self;
  base::Subscription other;
  self = time.every(1s, [&] {
    heard.push_back("self");
    self.reset();
    other.reset();
  });
  other = time.after(1s, note("other"));
  time.advance(10s);
  EXPECT_EQ(heard, Words{"self"});
  EXPECT_EQ(time.timerCount(), 0u);
}

TEST_F(VirtualTimeTest, runsATimerMadeByATimerWhenItsOwnTimeComes) {
  base::Subscription inner;
  const auto outer = time.after(1s, [&] { inner = time.after(2s, note("inner")); });
  time.advance(2999ms);
  EXPECT_TRUE(heard.empty());
  time.advance(1ms);
  EXPECT_EQ(heard, Words{"inner"});
}

TEST_F(VirtualTimeTest, takesANegativeDelayAsNone) {
  const auto start = time.now();
  const auto timer = time.after(-5s, note("a"));
  time.advance(0ns);
  EXPECT_EQ(heard, Words{"a"});
  EXPECT_EQ(time.now(), start);
}

TEST_F(VirtualTimeTest, survivesAnIntervalOfNothing) {
  const auto timer = time.every(0ms, note("a"));
  time.advance(5ms);
  EXPECT_EQ(heard.size(), 5u);
}

TEST_F(VirtualTimeTest, runsWhatWasPostedInOrderWithoutLettingTimePass) {
  const auto start = time.now();
  time.post(note("a"));
  time.post([&] {
    heard.push_back("b");
    time.post(note("d"));
  });
  time.post(note("c"));
  time.runPosted();
  EXPECT_EQ(heard, (Words{"a", "b", "c", "d"}));
  EXPECT_EQ(time.now(), start);
  time.runPosted();
  EXPECT_EQ(heard.size(), 4u);
}

TEST_F(VirtualTimeTest, runsWhatWasPostedBeforeTheTimersThatFollow) {
  const auto first = time.after(1s, [&] {
    heard.push_back("first");
    time.post(note("posted"));
  });
  const auto second = time.after(2s, note("second"));
  time.post(note("before"));
  time.advance(2s);
  EXPECT_EQ(heard, (Words{"before", "first", "posted", "second"}));
}

TEST_F(VirtualTimeTest, takesPostsFromOtherThreads) {
  std::vector<std::thread> threads;
  for (int thread = 0; thread < 4; ++thread) {
    threads.emplace_back([&] {
      for (int i = 0; i < 250; ++i) time.post(note("x"));
    });
  }
  for (auto& thread : threads) thread.join();
  time.runPosted();
  EXPECT_EQ(heard.size(), 1000u);
}

TEST_F(VirtualTimeTest, jumpsTheWallClockAloneForwardAndBack) {
  const auto start = time.now();
  const auto timer = time.after(1s, note("a"));
  time.jumpWallClock(8h);
  EXPECT_EQ(time.now() - start, 8h);
  time.advance(0ns);
  EXPECT_TRUE(heard.empty());
  time.jumpWallClock(-9h);
  EXPECT_EQ(time.now() - start, -1h);
  time.advance(1s);
  EXPECT_EQ(heard, Words{"a"});
  EXPECT_EQ(time.now() - start, -1h + 1s);
}

TEST_F(VirtualTimeTest, mayBeOutlivedBySubscriptions) {
  base::Subscription timer;
  {
    VirtualTime other;
    timer = other.after(1s, note("a"));
  }
  timer.reset();
  EXPECT_TRUE(heard.empty());
}

}  // namespace
}  // namespace orvalle::platform::memory
