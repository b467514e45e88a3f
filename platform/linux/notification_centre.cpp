#include "platform/notification_centre.h"

#include <gdk/gdkwayland.h>

#include <algorithm>
#include <deque>
#include <filesystem>
#include <map>
#include <string_view>
#include <utility>

#include "base/liveness.h"
#include "platform/linux/bus_call.h"
#include "platform/linux/factory.h"
#include "platform/linux/notification_switch.h"
#include "platform/linux/running_instance.h"

namespace orvalle::platform::linuxos {
namespace {

constexpr const char* kServer = "org.freedesktop.Notifications";
constexpr const char* kServerPath = "/org/freedesktop/Notifications";
constexpr const char* kDefaultAction = "default";

/// What the notification server can do.
struct Capabilities {
  bool actions = false;
  bool bodyMarkup = false;

  static Capabilities of(GVariant* answer) {
    Capabilities found;
    GVariantIter* names = nullptr;
    g_variant_get(answer, "(as)", &names);
    for (const char* name = nullptr; g_variant_iter_next(names, "&s", &name);) {
      if (std::string_view(name) == "actions") found.actions = true;
      if (std::string_view(name) == "body-markup") found.bodyMarkup = true;
    }
    g_variant_iter_free(names);
    return found;
  }
};

bool listHas(GVariant* answer, const char* wanted) {
  const GlibPtr<GVariant> list(g_variant_get_child_value(answer, 0));
  GVariantIter names;
  g_variant_iter_init(&names, list.get());
  for (const char* name = nullptr; g_variant_iter_next(&names, "&s", &name);) {
    if (g_str_equal(name, wanted)) return true;
  }
  return false;
}

/// The text as the bus takes it: a NUL would be its end.
std::string withoutNul(std::string text) {
  std::erase(text, '\0');
  return text;
}

std::string withoutMarkup(const std::string& text) {
  const GlibPtr<char> escaped(g_markup_escape_text(text.c_str(), -1));
  return escaped.get();
}

/// The desktop's notification server. It asks nobody for permission: who has one may notify, until the user
/// switches the program off in the desktop's settings.
class NotificationServer final : public NotificationCentre {
 public:
  NotificationServer(NativeApplication& application, const Environment& environment, const Bundle& bundle)
      : bus_(GObjectPtr<GDBusConnection>::share(
            g_application_get_dbus_connection(G_APPLICATION(application.gtk())))),
        environment_(environment),
        bundle_(bundle) {
    if (!bus_) return;
    watch_ = g_bus_watch_name_on_connection(bus_.get(), kServer, G_BUS_NAME_WATCHER_FLAGS_NONE, nullptr,
                                            serverGone, this, nullptr);
    signals_ = g_dbus_connection_signal_subscribe(bus_.get(), kServer, kServer, nullptr, kServerPath, nullptr,
                                                  G_DBUS_SIGNAL_FLAGS_NONE, signalled, this, nullptr);
  }
  NotificationServer(const NotificationServer&) = delete;
  NotificationServer& operator=(const NotificationServer&) = delete;
  ~NotificationServer() override {
    if (!bus_) return;
    g_dbus_connection_signal_unsubscribe(bus_.get(), signals_);
    g_bus_unwatch_name(watch_);
  }

  void setDelegate(NotificationDelegate* delegate) override { delegate_ = delegate; }

  void status(std::function<void(NotificationStatus)> done) override {
    findServer([this, done = std::move(done)](bool found) {
      if (!found) return done(NotificationStatus::Denied);
      askNotificationSwitch(bus_.get(), environment_, liveness_.guard([done](bool off) {
        done(off ? NotificationStatus::Denied : NotificationStatus::Authorised);
      }));
    });
  }

  void requestAuthorisation(const NotificationOptions&,
                            std::function<void(bool, std::optional<std::string>)> done) override {
    status([done = std::move(done)](NotificationStatus status) {
      done(status == NotificationStatus::Authorised, {});
    });
  }

  void add(const Notification& notification, std::function<void(std::optional<std::string>)> done) override {
    if (!bus_) return done("nessun bus di sessione");
    waiting_.push_back({notification, std::move(done)});
    if (waiting_.size() == 1) sendNext();
  }

 private:
  using Done = std::function<void(std::optional<std::string>)>;
  struct Job {
    Notification notification;
    Done done;
  };

  /// Whether there is a server, or one that would be started.
  void findServer(std::function<void(bool)> done) {
    if (!bus_) return done(false);
    const auto search = [this](const char* method, std::function<void(bool)> found) {
      callBus(bus_.get(), {kBusName, kBusPath, kBusName, method}, nullptr,
              liveness_.guard([found = std::move(found)](const BusAnswer& answer) {
                found(answer.value && listHas(answer.value.get(), kServer));
              }));
    };
    search("ListNames", [search, done = std::move(done)](bool runs) {
      if (runs) return done(true);
      search("ListActivatableNames", done);
    });
  }

  /// One at a time: a notification that is to replace another needs the number that the server gave that one.
  void sendNext() {
    callBus(bus_.get(), {kServer, kServerPath, kServer, "GetCapabilities"}, nullptr,
            liveness_.guard([this](const BusAnswer& answer) {
              if (!answer.value) return finish(answer.error);
              send(Capabilities::of(answer.value.get()));
            }));
  }

  void send(const Capabilities& capabilities) {
    const auto& notification = waiting_.front().notification;
    const auto known = ids_.find(notification.identifier);
    const std::string title = withoutNul(notification.title);
    const std::string body = withoutNul(notification.body);

    GVariantBuilder actions;
    g_variant_builder_init(&actions, G_VARIANT_TYPE("as"));
    if (capabilities.actions) {
      g_variant_builder_add(&actions, "s", kDefaultAction);
      g_variant_builder_add(&actions, "s", "Apri");
    }
    GVariantBuilder hints;
    g_variant_builder_init(&hints, G_VARIANT_TYPE_VARDICT);
    g_variant_builder_add(&hints, "{sv}", "desktop-entry", g_variant_new_string(kApplicationId));
    g_variant_builder_add(&hints, "{sv}", "suppress-sound", g_variant_new_boolean(TRUE));
    constexpr int kServerDecides = -1;
    callBus(
        bus_.get(), {kServer, kServerPath, kServer, "Notify"},
        g_variant_new("(susssasa{sv}i)", "Orvalle", known == ids_.end() ? 0 : known->second, icon().c_str(),
                      title.c_str(), (capabilities.bodyMarkup ? withoutMarkup(body) : body).c_str(), &actions,
                      &hints, kServerDecides),
        liveness_.guard([this](const BusAnswer& answer) {
          if (!answer.value) return finish(answer.error);
          guint32 id = 0;
          g_variant_get(answer.value.get(), "(u)", &id);
          ids_[waiting_.front().notification.identifier] = id;
          finish({});
        }));
  }

  void finish(std::optional<std::string> error) {
    const auto job = std::move(waiting_.front());
    waiting_.pop_front();
    if (!waiting_.empty()) sendNext();
    job.done(std::move(error));
  }

  /// The program's picture from the bundle: nobody has put it where servers look for names.
  std::string icon() const {
    const auto file = bundle_.path() / "share/icons/hicolor/scalable/apps/app.orvalle.Orvalle.svg";
    std::error_code error;
    return std::filesystem::exists(file, error) ? file.string() : std::string(kApplicationId);
  }

  /// The numbers of one server mean nothing to the next.
  static void serverGone(GDBusConnection*, const char*, gpointer self) {
    static_cast<NotificationServer*>(self)->ids_.clear();
  }

  static void signalled(GDBusConnection*, const char*, const char*, const char*, const char* name,
                        GVariant* parameters, gpointer data) {
    auto& self = *static_cast<NotificationServer*>(data);
    if (!g_variant_is_container(parameters) || g_variant_n_children(parameters) != 2) return;
    const GlibPtr<GVariant> number(g_variant_get_child_value(parameters, 0));
    const GlibPtr<GVariant> detail(g_variant_get_child_value(parameters, 1));
    if (!g_variant_is_of_type(number.get(), G_VARIANT_TYPE_UINT32)) return;
    const auto ours = std::find_if(
        self.ids_.begin(), self.ids_.end(),
        [id = g_variant_get_uint32(number.get())](const auto& entry) { return entry.second == id; });
    if (ours == self.ids_.end()) return;
    const bool isText = g_variant_is_of_type(detail.get(), G_VARIANT_TYPE_STRING);
    if (g_str_equal(name, "NotificationClosed")) {
      self.ids_.erase(ours);
    } else if (g_str_equal(name, "ActivationToken") && isText) {
      self.takeToken(g_variant_get_string(detail.get(), nullptr));
    } else if (g_str_equal(name, "ActionInvoked") && isText && self.delegate_ &&
               g_str_equal(g_variant_get_string(detail.get(), nullptr), kDefaultAction)) {
      self.delegate_->didSelect();
    }
  }

  /// The proof of the user's click, which lets a window take the focus under Wayland.
  static void takeToken(const char* token) {
    GdkDisplay* display = gdk_display_get_default();
    if (display && GDK_IS_WAYLAND_DISPLAY(display))
      gdk_wayland_display_set_startup_notification_id(display, token);
  }

  GObjectPtr<GDBusConnection> bus_;
  const Environment& environment_;
  const Bundle& bundle_;
  guint watch_ = 0;
  guint signals_ = 0;
  NotificationDelegate* delegate_ = nullptr;
  /// The server's numbers of the notifications that are there, by our identifiers.
  std::map<std::string, guint32> ids_;
  /// The first one is on its way.
  std::deque<Job> waiting_;
  base::Liveness liveness_;
};

}  // namespace

std::unique_ptr<NotificationCentre> makeNotificationCentre(NativeApplication& application,
                                                           const Environment& environment,
                                                           const Bundle& bundle) {
  return std::make_unique<NotificationServer>(application, environment, bundle);
}

}  // namespace orvalle::platform::linuxos
