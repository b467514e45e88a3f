// The desktops' screen saver services, played on the private bus.

#include "platform/session_watch.h"

#include <gio/gio.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "platform/linux/factory.h"
#include "platform/linux/glib_ptr.h"
#include "tests/contract/loop.h"
#include "tests/contract/own_bus.h"

namespace orvalle::platform::linuxos {
namespace {

using namespace std::chrono_literals;

/// A service on a connection of its own, which ends with it, as when the process dies.
class ScreenSaver {
 public:
  explicit ScreenSaver(std::string name) : name_(std::move(name)) {
    bus_ = contract::ownBus();
    const GlibPtr<GVariant> owned(g_dbus_connection_call_sync(
        bus_.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "RequestName",
        g_variant_new("(su)", name_.c_str(), 0u), nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr));
  }
  ScreenSaver(const ScreenSaver&) = delete;
  ScreenSaver& operator=(const ScreenSaver&) = delete;
  ~ScreenSaver() { g_dbus_connection_close_sync(bus_.get(), nullptr, nullptr); }

  void tell(GVariant* value) {
    g_dbus_connection_emit_signal(bus_.get(), nullptr, "/ScreenSaver", name_.c_str(), "ActiveChanged",
                                  g_variant_new_tuple(&value, 1), nullptr);
    g_dbus_connection_flush_sync(bus_.get(), nullptr, nullptr);
  }
  void tell(bool active) { tell(g_variant_new_boolean(active)); }

 private:
  std::string name_;
  GObjectPtr<GDBusConnection> bus_;
};

class SessionWatchBus : public ::testing::Test, public SessionDelegate {
 protected:
  void SetUp() override {
    watch->setDelegate(this);
    // Listening by now.
    contract::runFor(200ms);
  }
  void willSleep() override { told += "sleep "; }
  void didWake() override { told += "wake "; }
  void didLock() override { told += "lock "; }
  void didUnlock() override { told += "unlock "; }

  bool becomes(const std::string& expected) {
    return contract::runUntil([&] { return told == expected; });
  }

  std::string told;
  std::unique_ptr<SessionWatch> watch = makeSessionWatch();
};

TEST_F(SessionWatchBus, tellsWhatAnyDesktopsScreenSaverTells) {
  for (const char* name : {"org.freedesktop.ScreenSaver", "org.gnome.ScreenSaver", "org.cinnamon.ScreenSaver",
                           "org.mate.ScreenSaver", "org.xfce.ScreenSaver"}) {
    ScreenSaver saver(name);
    told.clear();
    saver.tell(true);
    EXPECT_TRUE(becomes("lock ")) << name << ": " << told;
    saver.tell(false);
    EXPECT_TRUE(becomes("lock unlock ")) << name << ": " << told;
  }
}

TEST_F(SessionWatchBus, isUnlockedWhenTheServiceThatCoveredTheScreenDies) {
  auto saver = std::make_unique<ScreenSaver>("org.mate.ScreenSaver");
  saver->tell(true);
  ASSERT_TRUE(becomes("lock "));
  contract::runFor(200ms);
  EXPECT_EQ(told, "lock ");
  saver.reset();
  EXPECT_TRUE(becomes("lock unlock ")) << told;
  // The next one is heard like the first.
  ScreenSaver next("org.mate.ScreenSaver");
  next.tell(true);
  EXPECT_TRUE(becomes("lock unlock lock ")) << told;
  next.tell(false);
  EXPECT_TRUE(becomes("lock unlock lock unlock ")) << told;
}

TEST_F(SessionWatchBus, isUnlockedEvenWhenTheServiceDiesAtOnce) {
  ScreenSaver("org.gnome.ScreenSaver").tell(true);
  EXPECT_TRUE(becomes("lock unlock ")) << told;
}

TEST_F(SessionWatchBus, staysLockedWhileOneOfTwoServicesSaysSo) {
  auto first = std::make_unique<ScreenSaver>("org.xfce.ScreenSaver");
  ScreenSaver second("org.freedesktop.ScreenSaver");
  first->tell(true);
  ASSERT_TRUE(becomes("lock "));
  second.tell(true);
  second.tell(true);
  contract::runFor(200ms);
  first.reset();
  contract::runFor(200ms);
  EXPECT_EQ(told, "lock ");
  second.tell(false);
  EXPECT_TRUE(becomes("lock unlock ")) << told;
}

TEST_F(SessionWatchBus, doesNotHearAServiceThatCoveredNothing) {
  {
    ScreenSaver saver("org.gnome.ScreenSaver");
    saver.tell(false);
    saver.tell(g_variant_new_string("molto"));
  }
  contract::runFor(200ms);
  EXPECT_EQ(told, "");
}

TEST_F(SessionWatchBus, isSilentOnceItIsGone) {
  auto saver = std::make_unique<ScreenSaver>("org.gnome.ScreenSaver");
  saver->tell(true);
  ASSERT_TRUE(becomes("lock "));
  watch.reset();
  saver.reset();
  contract::runFor(200ms);
  EXPECT_EQ(told, "lock ");
}

}  // namespace
}  // namespace orvalle::platform::linuxos
