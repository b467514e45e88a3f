// What programs tell assistive technologies of their windows, heard from real ones.

#include <gio/gio.h>
#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>

#include "platform/linux/frontmost_sources.h"
#include "platform/linux/glib_ptr.h"
#include "tests/contract/loop.h"

namespace orvalle::platform::linuxos {
namespace {

constexpr char kWindow[] = R"(
import sys, gi
gi.require_version('Gtk', '3.0')
from gi.repository import GLib, Gtk
GLib.set_prgname(sys.argv[1])
GLib.set_application_name(sys.argv[1])
window = Gtk.Window(title=sys.argv[2])
window.set_default_size(300, 200)
window.show_all()
window.present()
Gtk.main()
)";

/// Another program with one window, which gets the focus as soon as it is there.
class Foreign {
 public:
  Foreign(const char* name, const char* title)
      : process_(GObjectPtr<GSubprocess>::adopt(g_subprocess_new(
            G_SUBPROCESS_FLAGS_NONE, nullptr, "/usr/bin/python3", "-c", kWindow, name, title, nullptr))) {
    if (!process_) throw std::runtime_error("no other program");
  }
  Foreign(const Foreign&) = delete;
  Foreign& operator=(const Foreign&) = delete;
  ~Foreign() { die(); }
  void die() {
    g_subprocess_force_exit(process_.get());
    g_subprocess_wait(process_.get(), nullptr, nullptr);
  }

 private:
  GObjectPtr<GSubprocess> process_;
};

class FrontmostAtspi : public ::testing::Test {
 protected:
  bool becomes(const std::optional<std::string>& name) {
    return contract::runUntil([&] { return frontmost->applicationName() == name; }, std::chrono::seconds(30));
  }
  std::unique_ptr<Frontmost> frontmost = makeAtspiFrontmost();
};

TEST_F(FrontmostAtspi, hearsOfAWindowThatComesToTheFront) {
  EXPECT_EQ(frontmost->applicationName(), std::nullopt);
  // Listening by now.
  contract::runFor(std::chrono::milliseconds(500));
  const Foreign program("Quaderno", "Lettera – Città €");
  EXPECT_TRUE(becomes("Quaderno"));
  EXPECT_EQ(frontmost->focusedWindowTitle(), "Lettera – Città €");
}

TEST_F(FrontmostAtspi, findsTheWindowThatWasInFrontBefore) {
  const Foreign program("Quaderno", "Lettera");
  ASSERT_TRUE(becomes("Quaderno"));
  frontmost = makeAtspiFrontmost();
  EXPECT_TRUE(becomes("Quaderno"));
  EXPECT_EQ(frontmost->focusedWindowTitle(), "Lettera");
}

TEST_F(FrontmostAtspi, followsTheUserToAnotherProgram) {
  const Foreign first("Quaderno", "a");
  ASSERT_TRUE(becomes("Quaderno"));
  const Foreign second("Disegno", "b");
  EXPECT_TRUE(becomes("Disegno"));
  EXPECT_EQ(frontmost->focusedWindowTitle(), "b");
}

TEST_F(FrontmostAtspi, hasNothingOnceTheProgramInFrontHasDied) {
  Foreign program("Quaderno", "a");
  ASSERT_TRUE(becomes("Quaderno"));
  program.die();
  EXPECT_TRUE(becomes(std::nullopt));
  EXPECT_EQ(frontmost->focusedWindowTitle(), std::nullopt);
}

}  // namespace
}  // namespace orvalle::platform::linuxos
