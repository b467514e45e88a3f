#include "platform/main_loop.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "platform/memory/virtual_time.h"
#include "tests/contract/loop.h"
#include "tests/contract/native.h"

namespace orvalle::platform {
namespace {

using namespace std::chrono_literals;
using std::chrono::milliseconds;

class MemoryRig {
 public:
  MainLoop& loop() { return time_; }
  void pass(milliseconds duration) { time_.advance(duration); }
  /// How long this has been there, on the timers' clock.
  std::chrono::nanoseconds age() const { return time_.now() - start_; }

 private:
  memory::VirtualTime time_;
  WallTime start_ = time_.now();
};

class NativeRig {
 public:
  MainLoop& loop() { return *loop_; }
  std::chrono::nanoseconds age() const { return std::chrono::steady_clock::now() - start_; }

  /// Runs the loop for that long, and then whatever is due by now.
  void pass(milliseconds duration) {
    contract::runFor(duration);
    contract::turnLoopUntilIdle();
  }

 private:
  std::unique_ptr<MainLoop> loop_ = contract::native::makeMainLoop();
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

template <typename Rig>
class MainLoopContract : public ::testing::Test {
 protected:
  using Words = std::vector<std::string>;

  std::function<void()> note(std::string word) {
    return [this, word = std::move(word)] { heard.push_back(word); };
  }

  Rig rig;
  MainLoop& loop = rig.loop();
  Words heard;
};

using Rigs = ::testing::Types<MemoryRig, NativeRig>;
TYPED_TEST_SUITE(MainLoopContract, Rigs);

TYPED_TEST(MainLoopContract, runsWhatWasPostedLaterAndInOrder) {
  this->loop.post(this->note("a"));
  this->loop.post(this->note("b"));
  EXPECT_TRUE(this->heard.empty());
  this->rig.pass(0ms);
  EXPECT_EQ(this->heard, (std::vector<std::string>{"a", "b"}));
  this->rig.pass(10ms);
  EXPECT_EQ(this->heard.size(), 2u);
}

TYPED_TEST(MainLoopContract, runsWhatATaskPosts) {
  this->loop.post([this] { this->loop.post(this->note("inner")); });
  this->rig.pass(0ms);
  EXPECT_EQ(this->heard, std::vector<std::string>{"inner"});
}

TYPED_TEST(MainLoopContract, runsOnItsOwnThreadWhatAnotherOnePosts) {
  std::thread::id ranOn;
  std::thread([&] { this->loop.post([&] { ranOn = std::this_thread::get_id(); }); }).join();
  this->rig.pass(0ms);
  EXPECT_EQ(ranOn, std::this_thread::get_id());
}

TYPED_TEST(MainLoopContract, letsGoOfATaskOnceItHasRun) {
  const auto held = std::make_shared<int>(0);
  this->loop.post([held] {});
  const auto timer = this->loop.after(1ms, [held] {});
  EXPECT_EQ(held.use_count(), 3);
  this->rig.pass(5ms);
  EXPECT_EQ(held.use_count(), 1);
}

TYPED_TEST(MainLoopContract, runsATimerOnceAndNotEarly) {
  std::chrono::nanoseconds ran{};
  const auto timer = this->loop.after(60ms, [&] {
    ran = this->rig.age();
    this->heard.push_back("a");
  });
  this->rig.pass(100ms);
  EXPECT_EQ(this->heard.size(), 1u);
  EXPECT_GE(ran, 60ms);
  this->rig.pass(150ms);
  EXPECT_EQ(this->heard.size(), 1u);
}

TYPED_TEST(MainLoopContract, runsATimerWithoutDelayLater) {
  const auto timer = this->loop.after(0ms, this->note("a"));
  EXPECT_TRUE(this->heard.empty());
  this->rig.pass(1ms);
  EXPECT_EQ(this->heard.size(), 1u);
}

TYPED_TEST(MainLoopContract, runsTimersInTheOrderOfTheirDueTimes) {
  const auto late = this->loop.after(500ms, this->note("late"));
  const auto early = this->loop.after(5ms, this->note("early"));
  this->rig.pass(510ms);
  EXPECT_EQ(this->heard, (std::vector<std::string>{"early", "late"}));
}

TYPED_TEST(MainLoopContract, neverRunsATimerWhoseSubscriptionIsGone) {
  {
    const auto timer = this->loop.after(5ms, this->note("a"));
    const auto ticks = this->loop.every(5ms, this->note("b"));
  }
  this->rig.pass(30ms);
  EXPECT_TRUE(this->heard.empty());
}

TYPED_TEST(MainLoopContract, letsGoOfACancelledTask) {
  const auto held = std::make_shared<int>(0);
  auto timer = this->loop.after(1h, [held] {});
  auto ticks = this->loop.every(1h, [held] {});
  timer.reset();
  ticks.reset();
  EXPECT_EQ(held.use_count(), 1);
}

TYPED_TEST(MainLoopContract, ticksAgainAndAgainAndNeverEarly) {
  std::vector<std::chrono::nanoseconds> ticks;
  const auto timer = this->loop.every(20ms, [&] { ticks.push_back(this->rig.age()); });
  for (int waited = 0; ticks.size() < 4 && waited < 500; ++waited) this->rig.pass(10ms);
  ASSERT_GE(ticks.size(), 4u);
  for (std::size_t tick = 0; tick < ticks.size(); ++tick) EXPECT_GE(ticks[tick], (tick + 1) * 20ms);
}

TYPED_TEST(MainLoopContract, lastTickMayCancelItsOwnTimer) {
  base::Subscription ticks;
  const auto held = std::make_shared<int>(0);
  ticks = this->loop.every(5ms, [this, &ticks, held] {
    ticks.reset();
    // What the task holds stays until it has returned.
    this->heard.push_back(std::to_string(held.use_count() > 1));
  });
  this->rig.pass(50ms);
  EXPECT_EQ(this->heard, std::vector<std::string>{"1"});
  EXPECT_EQ(held.use_count(), 1);
}

TYPED_TEST(MainLoopContract, timerMayCancelItselfWhileItRuns) {
  base::Subscription timer;
  timer = this->loop.after(1ms, [this, &timer] {
    timer.reset();
    this->heard.push_back("a");
  });
  this->rig.pass(10ms);
  EXPECT_EQ(this->heard.size(), 1u);
}

TYPED_TEST(MainLoopContract, oneTimerMayCancelAnotherThatIsDueWithIt) {
  base::Subscription second;
  const auto first = this->loop.after(5ms, [&] { second.reset(); });
  second = this->loop.after(5ms, this->note("second"));
  this->rig.pass(0ms);
  std::this_thread::sleep_for(10ms);
  this->rig.pass(20ms);
  EXPECT_TRUE(this->heard.empty());
}

/// What only shows when the loop is held up, which virtual time never is.
class HeldUpMainLoop : public ::testing::Test {
 protected:
  NativeRig rig;
};

TEST_F(HeldUpMainLoop, runsALateTickOnceAndDoesNotMakeUpForTheRest) {
  int ticks = 0;
  const auto timer = rig.loop().every(20ms, [&] { ++ticks; });
  std::this_thread::sleep_for(110ms);
  rig.pass(0ms);
  EXPECT_EQ(ticks, 1);
}

TEST_F(HeldUpMainLoop, keepsToItsFirstRhythmAfterALateTick) {
  int ticks = 0;
  const auto start = rig.age();
  const auto timer = rig.loop().every(200ms, [&] { ++ticks; });
  const auto end = rig.age();
  std::this_thread::sleep_for(start + 350ms - rig.age());
  rig.pass(0ms);
  ASSERT_EQ(ticks, 1);
  // Counted from the late tick the next one would be due after 550 ms only. However busy the machine is, the
  // first turn after 400 ms must bring it.
  while (rig.age() < end + 400ms) std::this_thread::sleep_for(5ms);
  rig.pass(0ms);
  EXPECT_EQ(ticks, 2);
}

}  // namespace
}  // namespace orvalle::platform
