// What a Wayland compositor tells of the whole session. Runs under one, with real programs.

#include <gtest/gtest.h>

#include <gio/gio.h>
#include <sys/socket.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "platform/input_idle.h"
#include "platform/linux/factory.h"
#include "platform/linux/frontmost_sources.h"
#include "platform/linux/glib_ptr.h"
#include "platform/linux/input_idle_sources.h"
#include "platform/linux/wayland_connection.h"
#include "tests/contract/loop.h"

namespace orvalle::platform::linuxos {
namespace {

using namespace std::chrono_literals;

/// A terminal with this application id and title, in front as soon as it is there.
class Terminal {
 public:
  Terminal(const char* application, const char* title)
      : process_(GObjectPtr<GSubprocess>::adopt(g_subprocess_new(
            static_cast<GSubprocessFlags>(G_SUBPROCESS_FLAGS_STDOUT_SILENCE |
                                          G_SUBPROCESS_FLAGS_STDERR_SILENCE),
            nullptr, "foot", "--app-id", application, "--title", title, "sleep", "600", nullptr))) {
    if (!process_) throw std::runtime_error("no terminal");
  }
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;
  ~Terminal() {
    g_subprocess_force_exit(process_.get());
    g_subprocess_wait(process_.get(), nullptr, nullptr);
  }

 private:
  GObjectPtr<GSubprocess> process_;
};

/// The descriptors of the process, each with what it leads to.
std::set<std::pair<int, std::string>> openFiles() {
  std::set<std::pair<int, std::string>> files;
  for (const auto& each : std::filesystem::directory_iterator("/proc/self/fd"))
    files.emplace(std::stoi(each.path().filename()), std::filesystem::read_symlink(each));
  return files;
}

class WaylandIdle : public ::testing::Test {
 protected:
  void SetUp() override {
    if (!inWaylandSession()) GTEST_SKIP() << "no Wayland compositor";
  }
};

class WaylandSession : public WaylandIdle {
 protected:
  void SetUp() override {
    WaylandIdle::SetUp();
    if (IsSkipped()) return;
    frontmost = makeWaylandFrontmost();
    ASSERT_TRUE(frontmost);
  }
  bool becomes(const std::optional<std::string>& name) {
    return contract::runUntil([&] { return frontmost->applicationName() == name; });
  }
  std::unique_ptr<Frontmost> frontmost;
};

TEST_F(WaylandSession, tellsTheApplicationInFrontAndItsTitle) {
  const Terminal terminal("Quaderno", "Lettera – Città €");
  EXPECT_TRUE(becomes("Quaderno"));
  EXPECT_EQ(frontmost->focusedWindowTitle(), "Lettera – Città €");
  // And again, now that titles are kept.
  EXPECT_TRUE(becomes("Quaderno"));
  EXPECT_EQ(frontmost->focusedWindowTitle(), "Lettera – Città €");
}

TEST_F(WaylandSession, tellsItAgainAfterALookWithoutTheTitle) {
  const Terminal terminal("Quaderno", "Lettera");
  EXPECT_TRUE(becomes("Quaderno"));
  EXPECT_EQ(frontmost->focusedWindowTitle(), "Lettera");
  EXPECT_EQ(frontmost->applicationName(), "Quaderno");
  EXPECT_EQ(frontmost->applicationName(), "Quaderno");
  EXPECT_EQ(frontmost->focusedWindowTitle(), "Lettera");
}

TEST_F(WaylandSession, hasNothingWhereNothingIsInFront) {
  EXPECT_TRUE(becomes(std::nullopt));
  EXPECT_EQ(frontmost->focusedWindowTitle(), std::nullopt);
}

TEST_F(WaylandSession, followsTheUserToAnotherApplicationAndBack) {
  const Terminal first("Quaderno", "a");
  EXPECT_TRUE(becomes("Quaderno"));
  {
    const Terminal second("Disegno", "b");
    EXPECT_TRUE(becomes("Disegno"));
    EXPECT_EQ(frontmost->focusedWindowTitle(), "b");
  }
  EXPECT_TRUE(becomes("Quaderno"));
  EXPECT_EQ(frontmost->focusedWindowTitle(), "a");
}

TEST_F(WaylandSession, knowsWhatWasThereBeforeIt) {
  const Terminal terminal("Quaderno", "a");
  ASSERT_TRUE(becomes("Quaderno"));
  EXPECT_EQ(makeWaylandFrontmost()->applicationName(), "Quaderno");
}

TEST_F(WaylandSession, hasNothingOnceTheCompositorIsGone) {
  const Terminal terminal("Quaderno", "a");
  for (const bool titleKept : {false, true}) {
    const auto before = openFiles();
    frontmost = makeWaylandFrontmost();
    ASSERT_TRUE(becomes("Quaderno"));
    if (titleKept) ASSERT_EQ(frontmost->focusedWindowTitle(), "a");
    // The compositor stays, for the other tests; its connection ends as it would without it.
    for (const auto& file : openFiles()) {
      if (!before.contains(file)) ::shutdown(file.first, SHUT_RDWR);
    }
    // Once the library has seen it.
    EXPECT_TRUE(becomes(std::nullopt));
    EXPECT_EQ(frontmost->focusedWindowTitle(), std::nullopt);
    contract::runFor(200ms);
    EXPECT_EQ(frontmost->applicationName(), std::nullopt);
  }
}

TEST_F(WaylandIdle, tellsHowLongTheSessionHasBeenLeftAlone) {
  const auto idle = makeInputIdle();
  EXPECT_LT(idle->secondsSinceInput(), 5);
  contract::runFor(7s);
  EXPECT_GE(idle->secondsSinceInput(), 5);
  EXPECT_LT(idle->secondsSinceInput(), 60);
}

TEST_F(WaylandIdle, beginsAgainAtAnyInput) {
  const auto idle = makeWaylandInputIdle();
  ASSERT_TRUE(idle);
  ASSERT_TRUE(contract::runUntil([&] { return idle->secondsSinceInput() > 0; }));
  ASSERT_EQ(std::system("echo move 1 1 100 100 | '" ORVALLE_WAYLAND_POINTER "'"), 0);
  EXPECT_TRUE(contract::runUntil([&] { return idle->secondsSinceInput() == 0; }));
}

}  // namespace
}  // namespace orvalle::platform::linuxos
