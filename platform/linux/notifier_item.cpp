#include "platform/linux/notifier_item.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <memory>
#include <string_view>
#include <utility>

namespace orvalle::platform::linuxos {
namespace {

constexpr char kInterface[] = "org.kde.StatusNotifierItem";
constexpr char kPath[] = "/StatusNotifierItem";
constexpr char kWatcher[] = "org.kde.StatusNotifierWatcher";
constexpr char kWatcherPath[] = "/StatusNotifierWatcher";
constexpr char kBus[] = "org.freedesktop.DBus";
constexpr char kBusPath[] = "/org/freedesktop/DBus";

constexpr char kDescription[] = R"xml(<node>
  <interface name="org.kde.StatusNotifierItem">
    <property name="Category" type="s" access="read"/>
    <property name="Id" type="s" access="read"/>
    <property name="Title" type="s" access="read"/>
    <property name="Status" type="s" access="read"/>
    <property name="WindowId" type="i" access="read"/>
    <property name="IconName" type="s" access="read"/>
    <property name="IconPixmap" type="a(iiay)" access="read"/>
    <property name="IconThemePath" type="s" access="read"/>
    <property name="OverlayIconName" type="s" access="read"/>
    <property name="OverlayIconPixmap" type="a(iiay)" access="read"/>
    <property name="AttentionIconName" type="s" access="read"/>
    <property name="AttentionIconPixmap" type="a(iiay)" access="read"/>
    <property name="AttentionMovieName" type="s" access="read"/>
    <property name="ToolTip" type="(sa(iiay)ss)" access="read"/>
    <property name="ItemIsMenu" type="b" access="read"/>
    <property name="Menu" type="o" access="read"/>
    <property name="XAyatanaLabel" type="s" access="read"/>
    <property name="XAyatanaLabelGuide" type="s" access="read"/>
    <method name="ContextMenu"><arg name="x" type="i"/><arg name="y" type="i"/></method>
    <method name="Activate"><arg name="x" type="i"/><arg name="y" type="i"/></method>
    <method name="SecondaryActivate"><arg name="x" type="i"/><arg name="y" type="i"/></method>
    <method name="XAyatanaSecondaryActivate"><arg name="timestamp" type="u"/></method>
    <method name="Scroll"><arg name="delta" type="i"/><arg name="orientation" type="s"/></method>
    <method name="ProvideXdgActivationToken"><arg name="token" type="s"/></method>
    <signal name="NewTitle"/>
    <signal name="NewIcon"/>
    <signal name="NewToolTip"/>
    <signal name="NewStatus"><arg name="status" type="s"/></signal>
    <signal name="XAyatanaNewLabel"><arg name="label" type="s"/><arg name="guide" type="s"/></signal>
  </interface>
</node>)xml";

/// A text as wide as the label and as wide as it will be at the next tick: hosts that show labels keep this
/// much room, so that their neighbours stand still while the digits change.
std::string guide(std::string label) {
  std::replace_if(
      label.begin(), label.end(), [](char c) { return g_ascii_isdigit(c); }, '8');
  return label;
}

}  // namespace

NotifierItem::NotifierItem(GDBusConnection* bus, int number, NotifierFace face, std::function<void()> clicked)
    : bus_(GObjectPtr<GDBusConnection>::share(bus)),
      cancellable_(GObjectPtr<GCancellable>::adopt(g_cancellable_new())),
      name_(std::string(kInterface) + "-" + std::to_string(getpid()) + "-" + std::to_string(number)),
      face_(std::move(face)),
      clicked_(std::move(clicked)) {
  static constexpr GDBusInterfaceVTable kTable{answer, property, nullptr, {}};
  GDBusNodeInfo* node = g_dbus_node_info_new_for_xml(kDescription, nullptr);
  object_ =
      g_dbus_connection_register_object(bus, kPath, node->interfaces[0], &kTable, this, nullptr, nullptr);
  g_dbus_node_info_unref(node);
  if (object_ != 0) requestName();
}

NotifierItem::~NotifierItem() {
  g_cancellable_cancel(cancellable_.get());
  if (watch_ != 0) g_bus_unwatch_name(watch_);
  for (const guint signal : hostSignals_) {
    if (signal != 0) g_dbus_connection_signal_unsubscribe(bus_.get(), signal);
  }
  if (object_ == 0) return;
  g_dbus_connection_unregister_object(bus_.get(), object_);
  // Hosts take the item away when its name goes.
  g_dbus_connection_call(bus_.get(), kBus, kBusPath, kBus, "ReleaseName", g_variant_new("(s)", name_.c_str()),
                         nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr, nullptr);
}

void NotifierItem::requestName() {
  constexpr guint32 kDoNotQueue = 4;
  constexpr guint32 kPrimaryOwner = 1;
  // Not g_bus_own_name: giving a name back with it waits for the bus.
  g_dbus_connection_call(
      bus_.get(), kBus, kBusPath, kBus, "RequestName", g_variant_new("(su)", name_.c_str(), kDoNotQueue),
      G_VARIANT_TYPE("(u)"), G_DBUS_CALL_FLAGS_NONE, -1, cancellable_.get(),
      [](GObject* source, GAsyncResult* result, gpointer data) {
        auto* bus = G_DBUS_CONNECTION(source);
        GError* failure = nullptr;
        const GlibPtr<GVariant> reply(g_dbus_connection_call_finish(bus, result, &failure));
        const GlibPtr<GError> error(failure);
        if (error && g_error_matches(error.get(), G_IO_ERROR, G_IO_ERROR_CANCELLED)) return;
        guint32 outcome = 0;
        if (reply) g_variant_get(reply.get(), "(u)", &outcome);
        auto& self = *static_cast<NotifierItem*>(data);
        // Where names are not ours to choose, in a sandbox, the connection's own name does as well.
        self.watch(outcome == kPrimaryOwner ? self.name_ : g_dbus_connection_get_unique_name(bus));
      },
      this);
}

void NotifierItem::watch(std::string announcedName) {
  announcedName_ = std::move(announcedName);
  // Called once for each owner that the watcher's name ever gets.
  watch_ = g_bus_watch_name_on_connection(
      bus_.get(), kWatcher, G_BUS_NAME_WATCHER_FLAGS_NONE,
      [](GDBusConnection*, const char*, const char*, gpointer data) {
        auto& self = *static_cast<NotifierItem*>(data);
        self.announce();
        self.askForHosts();
      },
      [](GDBusConnection*, const char*, gpointer data) {
        auto& self = *static_cast<NotifierItem*>(data);
        g_cancellable_cancel(self.cancellable_.get());
        self.cancellable_ = GObjectPtr<GCancellable>::adopt(g_cancellable_new());
        self.shown_ = false;
      },
      this, nullptr);
  const auto follow = [&](const char* signal) {
    return g_dbus_connection_signal_subscribe(
        bus_.get(), kWatcher, kWatcher, signal, kWatcherPath, nullptr, G_DBUS_SIGNAL_FLAGS_NONE,
        [](GDBusConnection*, const char*, const char*, const char*, const char*, GVariant*, gpointer data) {
          static_cast<NotifierItem*>(data)->askForHosts();
        },
        this, nullptr);
  };
  // Asked again rather than counted: the one that left may not have been the last.
  hostSignals_ = {follow("StatusNotifierHostRegistered"), follow("StatusNotifierHostUnregistered")};
}

void NotifierItem::askForHosts() {
  g_dbus_connection_call(
      bus_.get(), kWatcher, kWatcherPath, "org.freedesktop.DBus.Properties", "Get",
      g_variant_new("(ss)", kWatcher, "IsStatusNotifierHostRegistered"), G_VARIANT_TYPE("(v)"),
      G_DBUS_CALL_FLAGS_NO_AUTO_START, -1, cancellable_.get(),
      [](GObject* source, GAsyncResult* result, gpointer data) {
        GError* failure = nullptr;
        const GlibPtr<GVariant> reply(
            g_dbus_connection_call_finish(G_DBUS_CONNECTION(source), result, &failure));
        const GlibPtr<GError> error(failure);
        if (error && g_error_matches(error.get(), G_IO_ERROR, G_IO_ERROR_CANCELLED)) return;
        GVariant* value = nullptr;
        if (reply) g_variant_get(reply.get(), "(v)", &value);
        const GlibPtr<GVariant> hosted(value);
        // A watcher that does not tell is one that shows the items itself.
        static_cast<NotifierItem*>(data)->shown_ =
            !hosted || !g_variant_is_of_type(hosted.get(), G_VARIANT_TYPE_BOOLEAN) ||
            g_variant_get_boolean(hosted.get());
      },
      this);
}

void NotifierItem::announce() {
  g_dbus_connection_call(bus_.get(), kWatcher, kWatcherPath, kWatcher, "RegisterStatusNotifierItem",
                         g_variant_new("(s)", announcedName_.c_str()), nullptr,
                         G_DBUS_CALL_FLAGS_NO_AUTO_START, -1, nullptr, nullptr, nullptr);
}

void NotifierItem::show(NotifierFace face) {
  const auto old = std::exchange(face_, std::move(face));
  if (old.title != face_.title) {
    emit("XAyatanaNewLabel", g_variant_new("(ss)", face_.title.c_str(), guide(face_.title).c_str()));
    emit("NewTitle", nullptr);
  }
  if (old.toolTip != face_.toolTip) emit("NewToolTip", nullptr);
  if (old.pixmaps != face_.pixmaps) emit("NewIcon", nullptr);
}

void NotifierItem::emit(const char* signal, GVariant* parameters) {
  g_dbus_connection_emit_signal(bus_.get(), nullptr, kPath, kInterface, signal, parameters, nullptr);
}

/// Everything that can be asked of the item is in its menu, which most hosts open by themselves. The panels
/// of LXQt and MATE do so for the other button only, and tell of a click. What hosts call beside that is
/// answered, and that is all.
void NotifierItem::answer(GDBusConnection*, const char*, const char*, const char*, const char* method,
                          GVariant*, GDBusMethodInvocation* invocation, gpointer self) {
  g_dbus_method_invocation_return_value(invocation, nullptr);
  if (std::string_view(method) == "Activate") static_cast<NotifierItem*>(self)->clicked_();
}

GVariant* NotifierItem::property(GDBusConnection*, const char*, const char*, const char*, const char* name,
                                 GError**, gpointer self) {
  return static_cast<const NotifierItem*>(self)->value(name).release();
}

GlibPtr<GVariant> NotifierItem::value(std::string_view name) const {
  const auto made = [](GVariant* variant) { return GlibPtr<GVariant>(g_variant_take_ref(variant)); };
  const auto text = [&](const std::string& string) { return made(g_variant_new_string(string.c_str())); };
  if (name == "Category") return text("ApplicationStatus");
  if (name == "Id") return text("orvalle");
  if (name == "Status") return text("Active");
  if (name == "Title" || name == "XAyatanaLabel") return text(face_.title);
  if (name == "XAyatanaLabelGuide") return text(guide(face_.title));
  if (name == "IconPixmap") return GlibPtr<GVariant>(g_variant_ref(face_.pixmaps.get()));
  // Most hosts show no label, and their icons are squares without room for minutes: there the tool tip is
  // what tells the time. A picture with minutes in it would be a new icon at every change of them.
  if (name == "ToolTip") {
    return made(g_variant_new("(s@a(iiay)ss)", "", g_variant_new_array(G_VARIANT_TYPE("(iiay)"), nullptr, 0),
                              face_.toolTip.c_str(), ""));
  }
  if (name == "ItemIsMenu") return made(g_variant_new_boolean(TRUE));
  if (name == "Menu") return made(g_variant_new_object_path(kStatusMenuPath));
  if (name == "WindowId") return made(g_variant_new_int32(0));
  if (name.ends_with("Pixmap")) return made(g_variant_new_array(G_VARIANT_TYPE("(iiay)"), nullptr, 0));
  return text("");
}

}  // namespace orvalle::platform::linuxos
