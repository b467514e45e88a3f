#include "platform/background.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "platform/memory/memory_services.h"
#include "platform/memory/virtual_time.h"
#include "tests/contract/loop.h"
#include "tests/contract/native.h"

namespace orvalle::contract {
namespace {

class MemoryBackgroundRig {
 public:
  platform::Background& background() { return background_; }
  template <typename Done>
  bool wait(Done done) {
    time_.runPosted();
    return done();
  }

 private:
  platform::memory::VirtualTime time_;
  platform::memory::MemoryBackground background_{time_};
};

class NativeBackgroundRig {
 public:
  platform::Background& background() { return *background_; }
  template <typename Done>
  bool wait(Done done) {
    return runUntil(done);
  }

 private:
  std::unique_ptr<platform::MainLoop> loop_ = native::makeMainLoop();
  std::unique_ptr<platform::Background> background_ = native::makeBackground(*loop_);
};

template <typename Rig>
class BackgroundContract : public ::testing::Test {
 protected:
  Rig rig;
};

using Rigs = ::testing::Types<MemoryBackgroundRig, NativeBackgroundRig>;
TYPED_TEST_SUITE(BackgroundContract, Rigs);

TYPED_TEST(BackgroundContract, doesOneThingAfterTheOtherAndTellsOfEachOnTheLoop) {
  const auto loopThread = std::this_thread::get_id();
  std::vector<std::string> events;
  std::string work;
  for (const std::string name : {"a", "b", "c"}) {
    this->rig.background().run([&work, name] { work += name; },
                               [&, name] {
                                 EXPECT_EQ(std::this_thread::get_id(), loopThread);
                                 events.push_back(name);
                               });
    EXPECT_TRUE(events.empty());
  }
  EXPECT_TRUE(this->rig.wait([&] { return events.size() == 3; }));
  EXPECT_EQ(events, (std::vector<std::string>{"a", "b", "c"}));
  EXPECT_EQ(work, "abc");
}

TYPED_TEST(BackgroundContract, takesMoreWhileItTellsOfOne) {
  int done = 0;
  this->rig.background().run([] {}, [&] { this->rig.background().run([] {}, [&] { ++done; }); });
  EXPECT_TRUE(this->rig.wait([&] { return done == 1; }));
}

TEST(NativeBackground, leavesTheLoopFree) {
  NativeBackgroundRig rig;
  std::atomic<bool> released = false;
  bool done = false;
  rig.background().run(
      [&] {
        while (!released) std::this_thread::yield();
      },
      [&] { done = true; });
  runFor(std::chrono::milliseconds(50));
  EXPECT_FALSE(done);
  released = true;
  EXPECT_TRUE(rig.wait([&] { return done; }));
}

TEST(NativeBackground, finishesWhatItWasGivenBeforeItGoesAndTellsNobody) {
  int work = 0;
  {
    auto rig = std::make_unique<NativeBackgroundRig>();
    for (int i = 0; i < 100; ++i) rig->background().run([&] { ++work; }, [&work] { work = -1000; });
  }
  runFor(std::chrono::milliseconds(50));
  EXPECT_EQ(work, 100);
}

}  // namespace
}  // namespace orvalle::contract
