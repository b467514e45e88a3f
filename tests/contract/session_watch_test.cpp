// The desktops' screen saver services and the login service, played on the private bus.

#include "platform/session_watch.h"

#include <gio/gio.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/linux/factory.h"
#include "platform/linux/glib_ptr.h"
#include "tests/contract/loop.h"
#include "tests/contract/own_bus.h"
#include "tests/contract/variable.h"

namespace orvalle::platform::linuxos {
namespace {

using namespace std::chrono_literals;

/// A service on a connection of its own, which ends with it, as when the process dies. Answers while the loop
/// turns.
class Service {
 public:
  Service(const Service&) = delete;
  Service& operator=(const Service&) = delete;

 protected:
  Service() : bus_(contract::ownBus()) {}
  virtual ~Service() {
    for (const guint object : objects_) g_dbus_connection_unregister_object(bus_.get(), object);
    g_dbus_connection_close_sync(bus_.get(), nullptr, nullptr);
  }

  /// What a call gets; a property is asked for by its name. Nothing for a refusal.
  virtual GVariant* answer(const std::string& question, GVariant* parameters) = 0;

  void serve(const std::string& path, const std::string& interface) {
    static constexpr GDBusInterfaceVTable kTable{call, property, nullptr, {}};
    GDBusNodeInfo* node = g_dbus_node_info_new_for_xml(("<node>" + interface + "</node>").c_str(), nullptr);
    objects_.push_back(g_dbus_connection_register_object(bus_.get(), path.c_str(), node->interfaces[0],
                                                         &kTable, this, nullptr, nullptr));
    g_dbus_node_info_unref(node);
  }
  void own(const std::string& name) {
    const GlibPtr<GVariant> owned(g_dbus_connection_call_sync(
        bus_.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "RequestName",
        g_variant_new("(su)", name.c_str(), 0u), nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr));
  }
  void emit(const std::string& path, const char* interface, const char* signal, GVariant* parameters) {
    g_dbus_connection_emit_signal(bus_.get(), nullptr, path.c_str(), interface, signal, parameters, nullptr);
    g_dbus_connection_flush_sync(bus_.get(), nullptr, nullptr);
  }

 private:
  static void call(GDBusConnection*, const char*, const char*, const char*, const char* method,
                   GVariant* parameters, GDBusMethodInvocation* invocation, gpointer self) {
    if (GVariant* value = static_cast<Service*>(self)->answer(method, parameters)) {
      g_dbus_method_invocation_return_value(invocation, g_variant_new_tuple(&value, 1));
    } else {
      g_dbus_method_invocation_return_dbus_error(invocation, "org.freedesktop.DBus.Error.Failed", "no");
    }
  }
  static GVariant* property(GDBusConnection*, const char*, const char*, const char*, const char* name,
                            GError**, gpointer self) {
    return static_cast<Service*>(self)->answer(name, nullptr);
  }

  GObjectPtr<GDBusConnection> bus_;
  std::vector<guint> objects_;
};

class ScreenSaver : public Service {
 public:
  explicit ScreenSaver(const std::string& name, bool active = false)
      : interface_(name), path_("." + name), active_(active) {
    std::replace(path_.begin(), path_.end(), '.', '/');
    serve(path_, "<interface name='" + name + "'><method name='GetActive'><arg type='b' direction='out'/>" +
                     "</method></interface>");
    own(name);
  }

  void tell(GVariant* value) {
    emit(path_, interface_.c_str(), "ActiveChanged", g_variant_new_tuple(&value, 1));
  }
  void tell(bool active) {
    active_ = active;
    tell(g_variant_new_boolean(active));
  }

 private:
  GVariant* answer(const std::string&, GVariant*) override { return g_variant_new_boolean(active_); }

  std::string interface_;
  std::string path_;
  bool active_;
};

/// Knows one session, by its number and as the caller's own.
class LoginService : public Service {
 public:
  explicit LoginService(bool locked) : locked_(locked) {
    serve("/org/freedesktop/login1",
          "<interface name='org.freedesktop.login1.Manager'><method name='GetSession'>"
          "<arg type='s' direction='in'/><arg type='o' direction='out'/></method></interface>");
    serve(kSession,
          "<interface name='org.freedesktop.login1.Session'>"
          "<property name='LockedHint' type='b' access='read'/></interface>");
    own("org.freedesktop.login1");
  }

  void lock(bool locked) {
    locked_ = locked;
    GVariantDict changed;
    g_variant_dict_init(&changed, nullptr);
    g_variant_dict_insert(&changed, "LockedHint", "b", locked);
    emit(kSession, "org.freedesktop.DBus.Properties", "PropertiesChanged",
         g_variant_new("(s@a{sv}as)", "org.freedesktop.login1.Session", g_variant_dict_end(&changed),
                       nullptr));
  }

  std::string asked;

 private:
  static constexpr char kSession[] = "/org/freedesktop/login1/session/_37";

  GVariant* answer(const std::string& question, GVariant* parameters) override {
    if (question == "LockedHint") return g_variant_new_boolean(locked_);
    const char* session = nullptr;
    g_variant_get(parameters, "(&s)", &session);
    asked += session + std::string(" ");
    return session == std::string("7") || session == std::string("auto") ? g_variant_new_object_path(kSession)
                                                                         : nullptr;
  }

  bool locked_;
};

class SessionWatchBus : public ::testing::Test, public SessionDelegate {
 protected:
  void SetUp() override { listen(); }
  void listen() {
    watch = makeSessionWatch();
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
  std::unique_ptr<SessionWatch> watch;
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

TEST_F(SessionWatchBus, isToldOfAScreenThatWasCoveredBeforeTheStart) {
  for (const char* name : {"org.freedesktop.ScreenSaver", "org.gnome.ScreenSaver", "org.cinnamon.ScreenSaver",
                           "org.mate.ScreenSaver", "org.xfce.ScreenSaver"}) {
    ScreenSaver saver(name, true);
    told.clear();
    listen();
    EXPECT_TRUE(becomes("lock ")) << name << ": " << told;
    saver.tell(false);
    EXPECT_TRUE(becomes("lock unlock ")) << name << ": " << told;
  }
}

TEST_F(SessionWatchBus, isToldOfACoverWhoseServiceAppearsWithIt) {
  ScreenSaver saver("org.gnome.ScreenSaver", true);
  EXPECT_TRUE(becomes("lock ")) << told;
  saver.tell(true);
  contract::runFor(200ms);
  EXPECT_EQ(told, "lock ");
}

TEST_F(SessionWatchBus, isSilentWhenItIsGoneBeforeTheAnswer) {
  ScreenSaver saver("org.gnome.ScreenSaver", true);
  for (int turns = 0; turns < 8; ++turns) {
    watch = makeSessionWatch();
    watch->setDelegate(this);
    for (int turn = 0; turn < turns; ++turn) contract::turnLoop();
    watch.reset();
    told.clear();
    contract::runFor(50ms);
    EXPECT_EQ(told, "") << turns;
  }
}

/// The private bus stands in for the machine's.
class SessionWatchLogin : public SessionWatchBus {
 protected:
  void SetUp() override {}

  contract::Variable bus{"DBUS_SYSTEM_BUS_ADDRESS", std::string(g_getenv("DBUS_SESSION_BUS_ADDRESS"))};
  contract::Variable session{"XDG_SESSION_ID", "7"};
};

TEST_F(SessionWatchLogin, isToldOfASessionThatWasLockedBeforeTheStart) {
  LoginService login(true);
  listen();
  EXPECT_TRUE(becomes("lock ")) << told;
  EXPECT_EQ(login.asked, "7 ");
  login.lock(false);
  EXPECT_TRUE(becomes("lock unlock ")) << told;
}

TEST_F(SessionWatchLogin, unlockedSessionIsNothingToTellUntilItIsLocked) {
  LoginService login(false);
  listen();
  EXPECT_EQ(login.asked, "7 ");
  EXPECT_EQ(told, "");
  login.lock(true);
  EXPECT_TRUE(becomes("lock ")) << told;
}

TEST_F(SessionWatchLogin, asksForTheUsersOwnSessionWhereNothingNamesIt) {
  const contract::Variable none("XDG_SESSION_ID", std::nullopt);
  LoginService login(true);
  listen();
  EXPECT_TRUE(becomes("lock ")) << told;
  EXPECT_EQ(login.asked, "auto ");
  login.lock(false);
  EXPECT_TRUE(becomes("lock unlock ")) << told;
}

TEST_F(SessionWatchLogin, asksForTheUsersOwnSessionWhereTheNamedOneIsOver) {
  const contract::Variable old("XDG_SESSION_ID", "3");
  LoginService login(true);
  listen();
  EXPECT_TRUE(becomes("lock ")) << told;
  EXPECT_EQ(login.asked, "3 auto ");
}

TEST_F(SessionWatchLogin, asksAgainWhenTheServiceIsStartedAnew) {
  listen();
  EXPECT_EQ(told, "");
  auto login = std::make_unique<LoginService>(true);
  EXPECT_TRUE(becomes("lock ")) << told;
  login.reset();
  EXPECT_TRUE(becomes("lock unlock ")) << told;
  login = std::make_unique<LoginService>(true);
  EXPECT_TRUE(becomes("lock unlock lock ")) << told;
  // Heard once, as before.
  login->lock(false);
  EXPECT_TRUE(becomes("lock unlock lock unlock ")) << told;
}

}  // namespace
}  // namespace orvalle::platform::linuxos
