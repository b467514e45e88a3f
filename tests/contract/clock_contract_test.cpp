#include "platform/clock.h"

#include <gtest/gtest.h>

#include <memory>
#include <thread>

#include "platform/memory/virtual_time.h"
#include "tests/contract/native.h"

namespace orvalle::platform {
namespace {

using namespace std::chrono_literals;

class MemoryRig {
 public:
  Clock& clock() { return time_; }
  void pass(std::chrono::milliseconds duration) { time_.advance(duration); }

 private:
  memory::VirtualTime time_;
};

class NativeRig {
 public:
  Clock& clock() { return *clock_; }
  void pass(std::chrono::milliseconds duration) { std::this_thread::sleep_for(duration); }

 private:
  std::unique_ptr<Clock> clock_ = contract::native::makeClock();
};

template <typename Rig>
class ClockContract : public ::testing::Test {
 protected:
  Rig rig;
};

using Rigs = ::testing::Types<MemoryRig, NativeRig>;
TYPED_TEST_SUITE(ClockContract, Rigs);

TYPED_TEST(ClockContract, goesOnByWhatPasses) {
  const auto before = this->rig.clock().now();
  this->rig.pass(30ms);
  const auto passed = this->rig.clock().now() - before;
  EXPECT_GE(passed, 29ms);
  EXPECT_LT(passed, 5s);
}

TYPED_TEST(ClockContract, tellsTimeInOurCentury) {
  using std::chrono::sys_days;
  EXPECT_GT(this->rig.clock().now(), sys_days(std::chrono::year(2026) / 1 / 1));
  EXPECT_LT(this->rig.clock().now(), sys_days(std::chrono::year(2100) / 1 / 1));
}

TEST(NativeClock, isTheWallClock) {
  const auto clock = contract::native::makeClock();
  const auto before = std::chrono::system_clock::now();
  const auto now = clock->now();
  EXPECT_GE(now, before);
  EXPECT_LE(now, std::chrono::system_clock::now());
}

}  // namespace
}  // namespace orvalle::platform
