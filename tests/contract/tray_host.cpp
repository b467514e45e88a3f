#include "tests/contract/tray_host.h"

#include <unistd.h>

#include <string_view>
#include <utility>

#include "tests/contract/loop.h"
#include "tests/contract/own_bus.h"

namespace orvalle::contract {
namespace {

using platform::linuxos::GlibPtr;

constexpr char kWatcher[] = "org.kde.StatusNotifierWatcher";
constexpr char kWatcherPath[] = "/StatusNotifierWatcher";
constexpr char kItem[] = "org.kde.StatusNotifierItem";
constexpr char kItemPath[] = "/StatusNotifierItem";
constexpr char kMenu[] = "com.canonical.dbusmenu";
constexpr char kBus[] = "org.freedesktop.DBus";
constexpr char kBusPath[] = "/org/freedesktop/DBus";
constexpr char kDescription[] =
    "<node><interface name='org.kde.StatusNotifierWatcher'>"
    "<method name='RegisterStatusNotifierItem'><arg name='service' type='s' direction='in'/></method>"
    "<property name='IsStatusNotifierHostRegistered' type='b' access='read'/>"
    "<signal name='StatusNotifierHostRegistered'/><signal name='StatusNotifierHostUnregistered'/>"
    "</interface></node>";

template <typename Value>
Value lookUp(GVariant* properties, const char* name, const char* type, Value fallback) {
  g_variant_lookup(properties, name, type, &fallback);
  return fallback;
}

std::string shortcutText(GVariant* properties) {
  const GlibPtr<GVariant> presses(g_variant_lookup_value(properties, "shortcut", G_VARIANT_TYPE("aas")));
  std::string text;
  if (!presses || g_variant_n_children(presses.get()) != 1) return text;
  const GlibPtr<GVariant> press(g_variant_get_child_value(presses.get(), 0));
  GVariantIter parts;
  g_variant_iter_init(&parts, press.get());
  for (const char* part = nullptr; g_variant_iter_next(&parts, "&s", &part);) {
    text += (text.empty() ? "" : "+") + std::string(part);
  }
  return text;
}

/// Reads "(ia{sv}av)".
TrayHost::Row readRow(GVariant* layout) {
  TrayHost::Row row;
  GVariant* properties = nullptr;
  GVariant* children = nullptr;
  g_variant_get(layout, "(i@a{sv}@av)", &row.id, &properties, &children);
  const GlibPtr<GVariant> ownedProperties(properties), ownedChildren(children);
  row.label = lookUp<const char*>(properties, "label", "&s", "");
  row.separator = std::string_view(lookUp<const char*>(properties, "type", "&s", "")) == "separator";
  row.enabled = lookUp<gboolean>(properties, "enabled", "b", TRUE);
  row.visible = lookUp<gboolean>(properties, "visible", "b", TRUE);
  if (std::string_view(lookUp<const char*>(properties, "toggle-type", "&s", "")) == "checkmark") {
    row.mark = lookUp<gint32>(properties, "toggle-state", "i", -1) == 1;
  }
  row.shortcut = shortcutText(properties);
  for (gsize index = 0; index < g_variant_n_children(children); ++index) {
    const GlibPtr<GVariant> boxed(g_variant_get_child_value(children, index));
    const GlibPtr<GVariant> child(g_variant_get_variant(boxed.get()));
    row.submenu.push_back(readRow(child.get()));
  }
  return row;
}

}  // namespace

TrayHost::TrayHost() : bus_(ownBus()) {
  subscription_ = g_dbus_connection_signal_subscribe(
      bus_.get(), nullptr, nullptr, nullptr, nullptr, nullptr, G_DBUS_SIGNAL_FLAGS_NONE,
      [](GDBusConnection*, const char*, const char*, const char* interface, const char* signal, GVariant*,
         gpointer self) {
        const std::string_view from(interface);
        if (from == kItem || from == kMenu) ++static_cast<TrayHost*>(self)->signals_[signal];
      },
      this, nullptr);
}

TrayHost::~TrayHost() {
  g_dbus_connection_signal_unsubscribe(bus_.get(), subscription_);
  if (object_ != 0) stopWatching();
  g_dbus_connection_close_sync(bus_.get(), nullptr, nullptr);
}

void TrayHost::startWatching() {
  static constexpr GDBusInterfaceVTable kTable{serve, property, nullptr, {}};
  GDBusNodeInfo* node = g_dbus_node_info_new_for_xml(kDescription, nullptr);
  object_ = g_dbus_connection_register_object(bus_.get(), kWatcherPath, node->interfaces[0], &kTable, this,
                                              nullptr, nullptr);
  g_dbus_node_info_unref(node);
  call(kBus, kBusPath, kBus, "RequestName", g_variant_new("(su)", kWatcher, 4));
}

void TrayHost::stopWatching() {
  call(kBus, kBusPath, kBus, "ReleaseName", g_variant_new("(s)", kWatcher));
  g_dbus_connection_unregister_object(bus_.get(), std::exchange(object_, 0));
}

void TrayHost::serve(GDBusConnection*, const char*, const char*, const char*, const char*,
                     GVariant* parameters, GDBusMethodInvocation* invocation, gpointer self) {
  const char* service = nullptr;
  g_variant_get(parameters, "(&s)", &service);
  static_cast<TrayHost*>(self)->announced_.emplace_back(service);
  g_dbus_method_invocation_return_value(invocation, nullptr);
}

GVariant* TrayHost::property(GDBusConnection*, const char*, const char*, const char*, const char* name,
                             GError** error, gpointer data) {
  auto& self = *static_cast<TrayHost*>(data);
  ++self.askedForHosts_;
  if (self.hosted_) return g_variant_new_boolean(*self.hosted_);
  g_set_error(error, G_DBUS_ERROR, G_DBUS_ERROR_UNKNOWN_PROPERTY, "no property %s", name);
  return nullptr;
}

void TrayHost::tellHosted(bool hosted) {
  hosted_ = hosted;
  g_dbus_connection_emit_signal(bus_.get(), nullptr, kWatcherPath, kWatcher,
                                hosted ? "StatusNotifierHostRegistered" : "StatusNotifierHostUnregistered",
                                nullptr, nullptr);
}

GlibPtr<GVariant> TrayHost::call(const char* name, const char* path, const char* interface,
                                 const char* method, GVariant* parameters) {
  struct Answer {
    bool arrived = false;
    GlibPtr<GVariant> value;
  } answer;
  // The item lives on this thread's loop: waiting for it must keep the loop turning.
  g_dbus_connection_call(
      bus_.get(), name, path, interface, method, parameters, nullptr, G_DBUS_CALL_FLAGS_NO_AUTO_START, -1,
      nullptr,
      [](GObject* source, GAsyncResult* result, gpointer data) {
        auto& waiting = *static_cast<Answer*>(data);
        waiting.arrived = true;
        waiting.value.reset(g_dbus_connection_call_finish(G_DBUS_CONNECTION(source), result, nullptr));
      },
      &answer);
  // Never given up: the answer is on this stack.
  while (!answer.arrived) g_main_context_iteration(nullptr, TRUE);
  return std::move(answer.value);
}

std::optional<std::string> TrayHost::item() {
  const auto listed = call(kBus, kBusPath, kBus, "ListNames", nullptr);
  const std::string mine = std::string(kItem) + "-" + std::to_string(getpid()) + "-";
  GVariantIter* names = nullptr;
  g_variant_get(listed.get(), "(as)", &names);
  std::optional<std::string> found;
  for (const char* name = nullptr; g_variant_iter_next(names, "&s", &name);) {
    if (std::string_view(name).starts_with(mine)) found = name;
  }
  g_variant_iter_free(names);
  return found;
}

GlibPtr<GVariant> TrayHost::property(const char* name) {
  const auto answer = call(item().value().c_str(), kItemPath, "org.freedesktop.DBus.Properties", "Get",
                           g_variant_new("(ss)", kItem, name));
  if (!answer) return nullptr;
  GVariant* value = nullptr;
  g_variant_get(answer.get(), "(v)", &value);
  return GlibPtr<GVariant>(value);
}

std::string TrayHost::text(const char* name) {
  return g_variant_get_string(property(name).get(), nullptr);
}

std::string TrayHost::toolTip() {
  const auto tip = property("ToolTip");
  const GlibPtr<GVariant> title(g_variant_get_child_value(tip.get(), 2));
  return g_variant_get_string(title.get(), nullptr);
}

std::vector<TrayHost::Row> TrayHost::menu() {
  const auto path = property("Menu");
  const auto answer = call(item().value().c_str(), g_variant_get_string(path.get(), nullptr), kMenu,
                           "GetLayout", g_variant_new("(ii@as)", 0, -1, g_variant_new_strv(nullptr, 0)));
  const GlibPtr<GVariant> layout(g_variant_get_child_value(answer.get(), 1));
  return readRow(layout.get()).submenu;
}

void TrayHost::click(const std::vector<int>& ids) {
  GVariantBuilder events;
  g_variant_builder_init(&events, G_VARIANT_TYPE("a(isvu)"));
  for (const int id : ids) {
    g_variant_builder_add(&events, "(isvu)", id, "clicked", g_variant_new_int32(0), 0);
  }
  const auto path = property("Menu");
  call(item().value().c_str(), g_variant_get_string(path.get(), nullptr), kMenu, "EventGroup",
       g_variant_new("(a(isvu))", &events));
}

std::map<std::string, int> TrayHost::takeSignals() {
  return std::exchange(signals_, {});
}

}  // namespace orvalle::contract
