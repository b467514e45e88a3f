#include "platform/session_watch.h"

#include <gio/gunixfdlist.h>
#include <unistd.h>

#include <algorithm>
#include <list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/liveness.h"
#include "platform/linux/bus_call.h"
#include "platform/linux/factory.h"
#include "platform/linux/glib_ptr.h"

namespace orvalle::platform::linuxos {
namespace {

constexpr char kLogin[] = "org.freedesktop.login1";
constexpr char kLoginPath[] = "/org/freedesktop/login1";
constexpr char kManager[] = "org.freedesktop.login1.Manager";
constexpr char kSession[] = "org.freedesktop.login1.Session";
constexpr char kProperties[] = "org.freedesktop.DBus.Properties";
/// The caller's session; for a program that the user's service manager started, the one with their display.
constexpr char kOwnSession[] = "auto";

/// What desktops call the service that covers or locks the screen; all of them tell in the same way.
constexpr const char* kScreenSavers[] = {"org.freedesktop.ScreenSaver", "org.gnome.ScreenSaver",
                                         "org.cinnamon.ScreenSaver", "org.mate.ScreenSaver",
                                         "org.xfce.ScreenSaver"};

/// Listens on both buses, of which either may be missing, and asks each service that is there or appears what
/// it has told already.
class BusSessionWatch final : public SessionWatch {
 public:
  BusSessionWatch() : cancellable_(GObjectPtr<GCancellable>::adopt(g_cancellable_new())) {
    g_bus_get(G_BUS_TYPE_SYSTEM, cancellable_.get(), gotSystemBus, this);
    g_bus_get(G_BUS_TYPE_SESSION, cancellable_.get(), gotSessionBus, this);
  }
  BusSessionWatch(const BusSessionWatch&) = delete;
  BusSessionWatch& operator=(const BusSessionWatch&) = delete;
  ~BusSessionWatch() override {
    g_cancellable_cancel(cancellable_.get());
    for (const guint name : names_) g_bus_unwatch_name(name);
    for (const auto& [bus, signal] : signals_) g_dbus_connection_signal_unsubscribe(bus.get(), signal);
    for (const auto& each : covers_) g_bus_unwatch_name(each.watch);
    letSleep();
  }

  void setDelegate(SessionDelegate* delegate) override { delegate_ = delegate; }

 private:
  using Bus = GObjectPtr<GDBusConnection>;
  /// A service that says that the screen is covered, and the interface by which it will take that back.
  struct Cover {
    BusSessionWatch* self;
    std::string sender;
    std::string interface;
    guint watch;
  };

  void listen(const Bus& bus, const char* sender, const char* interface, const char* signal, const char* path,
              const char* argument, GDBusSignalCallback callback) {
    signals_.emplace_back(
        bus, g_dbus_connection_signal_subscribe(bus.get(), sender, interface, signal, path, argument,
                                                G_DBUS_SIGNAL_FLAGS_NONE, callback, this, nullptr));
  }

  /// False when we are gone or there is no such bus.
  static bool got(GAsyncResult* result, Bus& bus) {
    GError* failure = nullptr;
    bus = Bus::adopt(g_bus_get_finish(result, &failure));
    const GlibPtr<GError> error(failure);
    return static_cast<bool>(bus);
  }

  static void gotSystemBus(GObject*, GAsyncResult* result, gpointer data) {
    Bus bus;
    if (!got(result, bus)) return;
    auto& self = *static_cast<BusSessionWatch*>(data);
    self.system_ = bus;
    self.listen(bus, kLogin, kManager, "PrepareForSleep", kLoginPath, nullptr, prepareForSleep);
    // Some systems start the service when it is first asked.
    self.names_.push_back(g_bus_watch_name_on_connection(
        bus.get(), kLogin, G_BUS_NAME_WATCHER_FLAGS_AUTO_START, loginAppeared, nullptr, data, nullptr));
  }

  static void loginAppeared(GDBusConnection*, const char*, const char* owner, gpointer data) {
    auto& self = *static_cast<BusSessionWatch*>(data);
    self.delaySleep();
    const char* session = g_getenv("XDG_SESSION_ID");
    self.findSession(owner, session ? session : kOwnSession);
  }

  void findSession(const std::string& login, const std::string& session) {
    callBus(system_.get(), {login.c_str(), kLoginPath, kManager, "GetSession"},
            g_variant_new("(s)", session.c_str()),
            liveness_.guard([this, login, session](const BusAnswer& answer) {
              if (answer.value && g_variant_is_of_type(answer.value.get(), G_VARIANT_TYPE("(o)"))) {
                const char* path = nullptr;
                g_variant_get(answer.value.get(), "(&o)", &path);
                followSession(login, path);
              } else if (session != kOwnSession) {
                // A variable left over from an earlier login.
                findSession(login, kOwnSession);
              }
            }));
  }

  void followSession(const std::string& login, const char* path) {
    if (session_ != path) {
      session_ = path;
      listen(system_, kLogin, kProperties, "PropertiesChanged", path, kSession, sessionChanged);
    }
    callBus(system_.get(), {login.c_str(), path, kProperties, "Get"},
            g_variant_new("(ss)", kSession, "LockedHint"),
            liveness_.guard([this, login](const BusAnswer& answer) {
              if (!answer.value || !g_variant_is_of_type(answer.value.get(), G_VARIANT_TYPE("(v)"))) return;
              GVariant* hint = nullptr;
              g_variant_get(answer.value.get(), "(v)", &hint);
              const GlibPtr<GVariant> owned(hint);
              if (g_variant_is_of_type(hint, G_VARIANT_TYPE_BOOLEAN))
                tell(system_.get(), login, kSession, g_variant_get_boolean(hint));
            }));
  }

  static void gotSessionBus(GObject*, GAsyncResult* result, gpointer data) {
    Bus bus;
    if (!got(result, bus)) return;
    auto& self = *static_cast<BusSessionWatch*>(data);
    for (const char* saver : kScreenSavers) {
      self.listen(bus, nullptr, saver, "ActiveChanged", nullptr, nullptr, coverChanged);
      self.names_.push_back(g_bus_watch_name_on_connection(bus.get(), saver, G_BUS_NAME_WATCHER_FLAGS_NONE,
                                                           saverAppeared, nullptr, data, nullptr));
    }
  }

  static void saverAppeared(GDBusConnection* connection, const char* name, const char* owner, gpointer data) {
    std::string path = std::string(".") + name;
    std::replace(path.begin(), path.end(), '.', '/');
    auto& self = *static_cast<BusSessionWatch*>(data);
    callBus(connection, {owner, path.c_str(), name, "GetActive"}, nullptr,
            self.liveness_.guard([&self, bus = Bus::share(connection), sender = std::string(owner),
                                  interface = std::string(name)](const BusAnswer& answer) {
              if (!answer.value) return;
              coverChanged(bus.get(), sender.c_str(), nullptr, interface.c_str(), nullptr, answer.value.get(),
                           &self);
            }));
  }

  static void prepareForSleep(GDBusConnection*, const char*, const char*, const char*, const char*,
                              GVariant* parameters, gpointer data) {
    auto& self = *static_cast<BusSessionWatch*>(data);
    gboolean sleeps = FALSE;
    if (!g_variant_is_of_type(parameters, G_VARIANT_TYPE("(b)"))) return;
    g_variant_get(parameters, "(b)", &sleeps);
    if (sleeps) {
      if (self.delegate_) self.delegate_->willSleep();
      self.letSleep();
    } else {
      self.delaySleep();
      if (self.delegate_) self.delegate_->didWake();
    }
  }

  static void sessionChanged(GDBusConnection* bus, const char* sender, const char*, const char*, const char*,
                             GVariant* parameters, gpointer data) {
    if (!g_variant_is_of_type(parameters, G_VARIANT_TYPE("(sa{sv}as)"))) return;
    const GlibPtr<GVariant> changed(g_variant_get_child_value(parameters, 1));
    gboolean locked = FALSE;
    if (g_variant_lookup(changed.get(), "LockedHint", "b", &locked))
      static_cast<BusSessionWatch*>(data)->tell(bus, sender, kSession, locked);
  }

  static void coverChanged(GDBusConnection* bus, const char* sender, const char*, const char* interface,
                           const char*, GVariant* parameters, gpointer data) {
    if (!g_variant_is_of_type(parameters, G_VARIANT_TYPE("(b)"))) return;
    gboolean active = FALSE;
    g_variant_get(parameters, "(b)", &active);
    static_cast<BusSessionWatch*>(data)->tell(bus, sender, interface, active);
  }

  /// Several services may tell of the same lock.
  void tell(GDBusConnection* bus, const std::string& sender, const std::string& interface, bool covered) {
    const auto told = std::find_if(covers_.begin(), covers_.end(), [&](const Cover& each) {
      return each.sender == sender && each.interface == interface;
    });
    if (covered == (told != covers_.end())) return;
    if (covered) {
      cover(bus, sender, interface);
    } else {
      uncover(told);
    }
  }

  void cover(GDBusConnection* bus, const std::string& sender, const std::string& interface) {
    auto& added = covers_.emplace_back(Cover{this, sender, interface, 0});
    // Who dies will not take it back.
    added.watch = g_bus_watch_name_on_connection(bus, sender.c_str(), G_BUS_NAME_WATCHER_FLAGS_NONE, nullptr,
                                                 vanished, &added, nullptr);
    if (covers_.size() == 1 && delegate_) delegate_->didLock();
  }

  void uncover(std::list<Cover>::iterator cover) {
    g_bus_unwatch_name(cover->watch);
    covers_.erase(cover);
    if (covers_.empty() && delegate_) delegate_->didUnlock();
  }

  static void vanished(GDBusConnection*, const char*, gpointer data) {
    const auto& gone = *static_cast<Cover*>(data);
    auto& self = *gone.self;
    self.uncover(std::find_if(self.covers_.begin(), self.covers_.end(),
                              [&](const Cover& each) { return &each == &gone; }));
  }

  /// Asks for the moment that is needed before the machine sleeps.
  void delaySleep() {
    g_dbus_connection_call_with_unix_fd_list(
        system_.get(), kLogin, kLoginPath, kManager, "Inhibit",
        g_variant_new("(ssss)", "sleep", "Orvalle", "Salva il diario delle attività", "delay"),
        G_VARIANT_TYPE("(h)"), G_DBUS_CALL_FLAGS_NONE, -1, nullptr, cancellable_.get(), gotDelay, this);
  }

  static void gotDelay(GObject* source, GAsyncResult* result, gpointer data) {
    GUnixFDList* list = nullptr;
    const GlibPtr<GVariant> answer(
        g_dbus_connection_call_with_unix_fd_list_finish(G_DBUS_CONNECTION(source), &list, result, nullptr));
    const auto files = GObjectPtr<GUnixFDList>::adopt(list);
    if (!answer || !list) return;
    gint32 index = 0;
    g_variant_get(answer.get(), "(h)", &index);
    auto& self = *static_cast<BusSessionWatch*>(data);
    self.letSleep();
    self.delay_ = g_unix_fd_list_get(list, index, nullptr);
  }

  void letSleep() {
    if (delay_ >= 0) ::close(delay_);
    delay_ = -1;
  }

  GObjectPtr<GCancellable> cancellable_;
  SessionDelegate* delegate_ = nullptr;
  Bus system_;
  std::vector<std::pair<Bus, guint>> signals_;
  std::vector<guint> names_;
  /// The path of the user's session at the login service.
  std::string session_;
  /// A list, because those who watch know the covers by their place.
  std::list<Cover> covers_;
  /// Closing this file lets the machine sleep.
  int delay_ = -1;
  base::Liveness liveness_;
};

}  // namespace

std::unique_ptr<SessionWatch> makeSessionWatch() {
  return std::make_unique<BusSessionWatch>();
}

}  // namespace orvalle::platform::linuxos
