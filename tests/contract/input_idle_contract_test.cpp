#include "platform/input_idle.h"

#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include <cmath>
#include <memory>
#include <string>

#include "platform/linux/factory.h"
#include "platform/memory/memory_diary.h"
#include "tests/contract/loop.h"

namespace orvalle::platform {
namespace {

class MemoryRig {
 public:
  InputIdle& idle() { return idle_; }
  void press() { idle_.seconds = 0; }
  void move() { idle_.seconds = 0; }
  void wait(std::chrono::milliseconds time) { idle_.seconds += std::chrono::duration<double>(time).count(); }

 private:
  memory::MemoryInputIdle idle_;
};

/// The private session's X server, with a hand on its keyboard and pointer.
class X11Rig {
 public:
  X11Rig() {
    gtk_init(nullptr, nullptr);
    idle_ = linuxos::makeInputIdle();
  }
  InputIdle& idle() { return *idle_; }
  void press() { run("xdotool key --clearmodifiers F13"); }
  void move() { run("xdotool mousemove_relative 3 2"); }
  void wait(std::chrono::milliseconds time) { contract::runFor(time); }

 private:
  static void run(const char* command) {
    int status = 1;
    if (!g_spawn_command_line_sync(command, nullptr, nullptr, &status, nullptr) || status != 0)
      throw std::runtime_error(command);
  }
  std::unique_ptr<InputIdle> idle_;
};

template <typename Rig>
class InputIdleContract : public ::testing::Test {
 protected:
  double seconds() { return rig.idle().secondsSinceInput(); }
  Rig rig;
};

using Rigs = ::testing::Types<MemoryRig, X11Rig>;
TYPED_TEST_SUITE(InputIdleContract, Rigs);

TYPED_TEST(InputIdleContract, isFiniteAndNotNegative) {
  EXPECT_TRUE(std::isfinite(this->seconds()));
  EXPECT_GE(this->seconds(), 0);
}

TYPED_TEST(InputIdleContract, growsWhileNobodyTouchesAnything) {
  this->rig.press();
  this->rig.wait(std::chrono::milliseconds(1500));
  EXPECT_GE(this->seconds(), 1.4);
  EXPECT_LT(this->seconds(), 60);
}

TYPED_TEST(InputIdleContract, isAboutNothingAfterAKeyWasPressed) {
  this->rig.wait(std::chrono::milliseconds(1500));
  this->rig.press();
  EXPECT_LT(this->seconds(), 1.4);
}

TYPED_TEST(InputIdleContract, isAboutNothingAfterThePointerWasMoved) {
  this->rig.wait(std::chrono::milliseconds(1500));
  this->rig.move();
  EXPECT_LT(this->seconds(), 1.4);
}

}  // namespace
}  // namespace orvalle::platform
