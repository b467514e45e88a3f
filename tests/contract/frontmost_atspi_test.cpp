// What programs tell assistive technologies of their windows, heard from real ones.

#include <gio/gio.h>
#include <gtest/gtest.h>

#include <csignal>
#include <memory>
#include <stdexcept>
#include <string>

#include "platform/linux/frontmost_sources.h"
#include "platform/linux/glib_ptr.h"
#include "tests/contract/loop.h"
#include "tests/contract/own_bus.h"

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

GlibPtr<GVariant> callBus(GDBusConnection* bus, const char* method, GVariant* arguments) {
  return GlibPtr<GVariant>(g_dbus_connection_call_sync(bus, "org.freedesktop.DBus", "/org/freedesktop/DBus",
                                                       "org.freedesktop.DBus", method, arguments, nullptr,
                                                       G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr));
}

/// With the bus of the assistive technologies ended: in a session of its own, as other tests need that bus.
class AccessibilityBus : public FrontmostAtspi {
 protected:
  /// Ends it, and with it the service that leads to it.
  void endBus() {
    const GlibPtr<GVariant> answer(g_dbus_connection_call_sync(session.get(), "org.a11y.Bus", "/org/a11y/bus",
                                                               "org.a11y.Bus", "GetAddress", nullptr, nullptr,
                                                               G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr));
    ASSERT_TRUE(answer);
    const char* address = nullptr;
    g_variant_get(answer.get(), "(&s)", &address);
    const auto bus = contract::busAt(address);
    const auto process =
        callBus(bus.get(), "GetConnectionUnixProcessID", g_variant_new("(s)", "org.freedesktop.DBus"));
    ASSERT_TRUE(process);
    guint32 pid = 0;
    g_variant_get(process.get(), "(u)", &pid);
    ASSERT_EQ(::kill(static_cast<pid_t>(pid), SIGTERM), 0);
    ASSERT_TRUE(contract::runUntil([&] { return g_dbus_connection_is_closed(bus.get()); }));
    ASSERT_TRUE(contract::runUntil(
        [&] { return !callBus(session.get(), "GetNameOwner", g_variant_new("(s)", "org.a11y.Bus")); }));
  }

  GObjectPtr<GDBusConnection> session =
      GObjectPtr<GDBusConnection>::adopt(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
};

TEST_F(AccessibilityBus, hasNothingOnceItEndsAndListensToTheNextOne) {
  const Foreign first("Quaderno", "a");
  ASSERT_TRUE(becomes("Quaderno"));
  endBus();
  EXPECT_EQ(frontmost->focusedWindowTitle(), std::nullopt);
  EXPECT_EQ(frontmost->applicationName(), std::nullopt);
  EXPECT_EQ(frontmost->focusedWindowTitle(), std::nullopt);
  const Foreign second("Disegno", "b");
  EXPECT_TRUE(becomes("Disegno"));
  EXPECT_EQ(frontmost->focusedWindowTitle(), "b");
}

TEST_F(AccessibilityBus, isLookedForAgainWhereItWasMissing) {
  endBus();
  // Whoever has the name and knows no such question.
  const GlibPtr<char> address(g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
  auto other = contract::busAt(address.get());
  ASSERT_TRUE(callBus(other.get(), "RequestName", g_variant_new("(su)", "org.a11y.Bus", 0u)));
  EXPECT_EQ(frontmost->applicationName(), std::nullopt);
  contract::runFor(std::chrono::seconds(1));
  EXPECT_EQ(frontmost->applicationName(), std::nullopt);
  g_dbus_connection_close_sync(other.get(), nullptr, nullptr);
  const Foreign program("Quaderno", "a");
  EXPECT_TRUE(becomes("Quaderno"));
}

}  // namespace
}  // namespace orvalle::platform::linuxos
