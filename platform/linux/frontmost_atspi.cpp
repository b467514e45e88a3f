#include <gio/gio.h>

#include <algorithm>
#include <string>
#include <utility>

#include "platform/linux/application_names.h"
#include "platform/linux/frontmost_sources.h"
#include "platform/linux/glib_ptr.h"

namespace orvalle::platform::linuxos {
namespace {

constexpr char kRegistry[] = "org.a11y.atspi.Registry";
constexpr char kRoot[] = "/org/a11y/atspi/accessible/root";
constexpr char kAccessible[] = "org.a11y.atspi.Accessible";
constexpr char kWindowEvents[] = "org.a11y.atspi.Event.Window";
constexpr char kBus[] = "org.freedesktop.DBus";

/// How long after one failed the next attempt to get at the bus comes. It may start a process each time.
constexpr gint64 kPause = 5 * gint64{G_USEC_PER_SEC};
/// Programs that hang are not to hold us up.
constexpr int kPatienceMilliseconds = 250;
constexpr glong kLongestTitle = 1024;
/// The bit of the state set that stands for "active".
constexpr guint32 kActive = 1u << 1;

/// A window on the bus of the assistive technologies.
struct Place {
  std::string program;
  std::string path;
  bool operator==(const Place&) const = default;
};

/// Listens to what programs tell assistive technologies of their windows, from the first look on. Programs
/// that tell nothing are not seen. Their bus may be missing, or close and come back.
class AtspiFrontmost final : public Frontmost {
 public:
  AtspiFrontmost() = default;
  AtspiFrontmost(const AtspiFrontmost&) = delete;
  AtspiFrontmost& operator=(const AtspiFrontmost&) = delete;
  ~AtspiFrontmost() override { forget(); }

  std::optional<std::string> applicationName() override {
    if (bus_ && g_dbus_connection_is_closed(bus_.get())) forget();
    if (!bus_) start();
    if (bus_ && !front_) lookAround();
    looked_ = front_;
    return front_ ? name_ : std::nullopt;
  }

  std::optional<std::string> focusedWindowTitle() override {
    if (!looked_ || looked_ != front_) return {};
    const auto title = readName(*front_);
    if (!title || title->empty()) return {};
    const GlibPtr<char> shown(
        g_utf8_substring(title->c_str(), 0, std::min(g_utf8_strlen(title->c_str(), -1), kLongestTitle)));
    return shown.get();
  }

 private:
  using Answered = void (AtspiFrontmost::*)(GVariant* answer, const Place& asked);
  /// A question on its way, and who hears the answer.
  struct Question {
    AtspiFrontmost* owner;
    Answered answered;
    Place asked;
  };

  /// Asks without waiting; nobody hears of a failure.
  void ask(GDBusConnection* bus, const Place& place, const char* interface, const char* method,
           GVariant* arguments, Answered answered) {
    g_dbus_connection_call(
        bus, place.program.c_str(), place.path.c_str(), interface, method, arguments, nullptr,
        G_DBUS_CALL_FLAGS_NONE, -1, cancellable_.get(),
        [](GObject* source, GAsyncResult* result, gpointer data) {
          const std::unique_ptr<Question> question(static_cast<Question*>(data));
          GError* failure = nullptr;
          const GlibPtr<GVariant> answer(
              g_dbus_connection_call_finish(G_DBUS_CONNECTION(source), result, &failure));
          const GlibPtr<GError> error(failure);
          // Cancelled: the owner is gone.
          if (answer && question->answered)
            (question->owner->*question->answered)(answer.get(), question->asked);
        },
        new Question{this, answered, place});
  }

  /// Answers that are still on their way are of the bus that was.
  void forget() {
    g_cancellable_cancel(cancellable_.get());
    cancellable_ = GObjectPtr<GCancellable>::adopt(g_cancellable_new());
    if (bus_) {
      for (const guint subscription : subscriptions_)
        g_dbus_connection_signal_unsubscribe(bus_.get(), subscription);
    }
    bus_ = {};
    front_.reset();
    looked_.reset();
    started_.reset();
    lookedAround_.reset();
  }

  /// Whether this is long enough after the last time to do again what is done now and then.
  static bool isTime(std::optional<gint64>& last, gint64 pause) {
    const gint64 now = g_get_monotonic_time();
    if (last && now - *last < pause) return false;
    last = now;
    return true;
  }

  void start() {
    if (!isTime(started_, kPause)) return;
    const auto session =
        GObjectPtr<GDBusConnection>::adopt(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
    if (!session) return;
    // A slow answer to the attempt before would only be a second bus.
    g_cancellable_cancel(cancellable_.get());
    cancellable_ = GObjectPtr<GCancellable>::adopt(g_cancellable_new());
    ask(session.get(), {"org.a11y.Bus", "/org/a11y/bus"}, "org.a11y.Bus", "GetAddress", nullptr,
        &AtspiFrontmost::connect);
  }

  void connect(GVariant* answer, const Place&) {
    const char* address = nullptr;
    g_variant_get(answer, "(&s)", &address);
    g_dbus_connection_new_for_address(
        address,
        static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                          G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
        nullptr, cancellable_.get(),
        [](GObject*, GAsyncResult* result, gpointer data) {
          GError* failure = nullptr;
          auto bus =
              GObjectPtr<GDBusConnection>::adopt(g_dbus_connection_new_for_address_finish(result, &failure));
          const GlibPtr<GError> error(failure);
          if (bus) static_cast<AtspiFrontmost*>(data)->listen(std::move(bus));
        },
        this);
  }

  void listen(GObjectPtr<GDBusConnection> bus) {
    bus_ = std::move(bus);
    subscriptions_[0] = subscribe(nullptr, kWindowEvents, nullptr, windowEvent);
    subscriptions_[1] = subscribe(kBus, kBus, "NameOwnerChanged", ownerChanged);
    const Place registry{kRegistry, "/org/a11y/atspi/registry"};
    for (const char* event : {"window:activate", "window:deactivate"})
      ask(bus_.get(), registry, kRegistry, "RegisterEvent", g_variant_new("(s)", event), nullptr);
    lookAround();
  }

  /// What came to the front before anybody listened tells nothing more of itself: it has to be found.
  void lookAround() {
    if (!isTime(lookedAround_, G_USEC_PER_SEC)) return;
    ask(bus_.get(), {kRegistry, kRoot}, kAccessible, "GetChildren", nullptr, &AtspiFrontmost::foundPrograms);
  }

  guint subscribe(const char* sender, const char* interface, const char* signal, GDBusSignalCallback told) {
    return g_dbus_connection_signal_subscribe(bus_.get(), sender, interface, signal, nullptr, nullptr,
                                              G_DBUS_SIGNAL_FLAGS_NONE, told, this, nullptr);
  }

  void forEachChild(GVariant* children, const char* method, Answered answered) {
    if (!g_variant_is_of_type(children, G_VARIANT_TYPE("(a(so))"))) return;
    GVariantIter* each = nullptr;
    const char* program = nullptr;
    const char* path = nullptr;
    g_variant_get(children, "(a(so))", &each);
    while (g_variant_iter_next(each, "(&s&o)", &program, &path))
      ask(bus_.get(), {program, path}, kAccessible, method, nullptr, answered);
    g_variant_iter_free(each);
  }

  void foundPrograms(GVariant* answer, const Place&) {
    forEachChild(answer, "GetChildren", &AtspiFrontmost::foundWindows);
  }
  void foundWindows(GVariant* answer, const Place&) {
    forEachChild(answer, "GetState", &AtspiFrontmost::foundState);
  }
  void foundState(GVariant* answer, const Place& window) {
    if (front_ || !g_variant_is_of_type(answer, G_VARIANT_TYPE("(au)"))) return;
    const GlibPtr<GVariant> words(g_variant_get_child_value(answer, 0));
    if (g_variant_n_children(words.get()) == 0) return;
    guint32 first = 0;
    g_variant_get_child(words.get(), 0, "u", &first);
    if (first & kActive) bringToFront(window);
  }

  void bringToFront(const Place& window) {
    front_ = window;
    name_.reset();
    ask(bus_.get(), {window.program, kRoot}, "org.freedesktop.DBus.Properties", "Get",
        g_variant_new("(ss)", kAccessible, "Name"), &AtspiFrontmost::foundName);
  }

  void foundName(GVariant* answer, const Place& root) {
    if (!front_ || front_->program != root.program) return;
    if (const auto name = textIn(answer)) name_ = names_.ofWindows(*name, *name);
  }

  static std::optional<std::string> textIn(GVariant* answer) {
    if (!g_variant_is_of_type(answer, G_VARIANT_TYPE("(v)"))) return {};
    GVariant* held = nullptr;
    g_variant_get(answer, "(v)", &held);
    const GlibPtr<GVariant> value(held);
    if (!g_variant_is_of_type(held, G_VARIANT_TYPE_STRING)) return {};
    return g_variant_get_string(held, nullptr);
  }

  std::optional<std::string> readName(const Place& window) const {
    const GlibPtr<GVariant> answer(g_dbus_connection_call_sync(
        bus_.get(), window.program.c_str(), window.path.c_str(), "org.freedesktop.DBus.Properties", "Get",
        g_variant_new("(ss)", kAccessible, "Name"), nullptr, G_DBUS_CALL_FLAGS_NONE, kPatienceMilliseconds,
        cancellable_.get(), nullptr));
    return answer ? textIn(answer.get()) : std::nullopt;
  }

  static void windowEvent(GDBusConnection*, const char* sender, const char* path, const char*,
                          const char* signal, GVariant*, gpointer data) {
    auto& self = *static_cast<AtspiFrontmost*>(data);
    const Place window{sender, path};
    if (g_str_equal(signal, "Activate")) {
      self.bringToFront(window);
    } else if (g_str_equal(signal, "Deactivate") && self.front_ == window) {
      self.front_.reset();
    }
  }

  static void ownerChanged(GDBusConnection*, const char*, const char*, const char*, const char*,
                           GVariant* parameters, gpointer data) {
    auto& self = *static_cast<AtspiFrontmost*>(data);
    const char* name = nullptr;
    const char* newOwner = nullptr;
    const char* oldOwner = nullptr;
    g_variant_get(parameters, "(&s&s&s)", &name, &oldOwner, &newOwner);
    if (!*newOwner && self.front_ && self.front_->program == name) self.front_.reset();
  }

  GObjectPtr<GCancellable> cancellable_ = GObjectPtr<GCancellable>::adopt(g_cancellable_new());
  GObjectPtr<GDBusConnection> bus_;
  guint subscriptions_[2] = {};
  /// When the bus was asked for last, and when the programs were; absent before the first time.
  std::optional<gint64> started_;
  std::optional<gint64> lookedAround_;
  /// Absent while no window is known to be in front.
  std::optional<Place> front_;
  /// The window of the last look.
  std::optional<Place> looked_;
  /// Of the program in front; absent until it has told.
  std::optional<std::string> name_;
  ApplicationNames names_;
};

}  // namespace

std::unique_ptr<Frontmost> makeAtspiFrontmost() {
  return std::make_unique<AtspiFrontmost>();
}

}  // namespace orvalle::platform::linuxos
