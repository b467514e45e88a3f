#include "tests/contract/notification_server.h"

#include <stdexcept>
#include <string_view>

#include "tests/contract/loop.h"
#include "tests/contract/own_bus.h"

namespace orvalle::contract {
namespace {

using platform::linuxos::GlibPtr;
using platform::linuxos::GObjectPtr;

constexpr char kName[] = "org.freedesktop.Notifications";
constexpr char kPath[] = "/org/freedesktop/Notifications";
constexpr char kDescription[] =
    "<node><interface name='org.freedesktop.Notifications'>"
    "<method name='GetCapabilities'><arg type='as' direction='out'/></method>"
    "<method name='Notify'><arg type='s' direction='in'/><arg type='u' direction='in'/>"
    "<arg type='s' direction='in'/><arg type='s' direction='in'/><arg type='s' direction='in'/>"
    "<arg type='as' direction='in'/><arg type='a{sv}' direction='in'/><arg type='i' direction='in'/>"
    "<arg type='u' direction='out'/></method>"
    "</interface></node>";

std::vector<std::string> texts(GVariant* list) {
  std::vector<std::string> found;
  GVariantIter each;
  g_variant_iter_init(&each, list);
  for (const char* text = nullptr; g_variant_iter_next(&each, "&s", &text);) found.emplace_back(text);
  return found;
}

}  // namespace

NotificationServer::NotificationServer() {
  bus_ = contract::ownBus();
  GDBusNodeInfo* description = g_dbus_node_info_new_for_xml(kDescription, nullptr);
  constexpr GDBusInterfaceVTable kTable = {serve, nullptr, nullptr, {}};
  object_ = g_dbus_connection_register_object(bus_.get(), kPath, description->interfaces[0], &kTable, this,
                                              nullptr, nullptr);
  g_dbus_node_info_unref(description);
}

NotificationServer::~NotificationServer() {
  stop();
  g_dbus_connection_unregister_object(bus_.get(), object_);
  g_dbus_connection_close_sync(bus_.get(), nullptr, nullptr);
}

void NotificationServer::start() {
  callBus("RequestName", g_variant_new("(su)", kName, 0));
  running_ = true;
}

void NotificationServer::stop() {
  if (!running_) return;
  callBus("ReleaseName", g_variant_new("(s)", kName));
  running_ = false;
}

void NotificationServer::signal(const char* name, GVariant* parameters) {
  g_dbus_connection_emit_signal(bus_.get(), nullptr, kPath, kName, name, parameters, nullptr);
  g_dbus_connection_flush_sync(bus_.get(), nullptr, nullptr);
  runFor(std::chrono::milliseconds(100));
}

void NotificationServer::callBus(const char* method, GVariant* parameters) {
  const GlibPtr<GVariant> answer(g_dbus_connection_call_sync(
      bus_.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", method, parameters,
      nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr));
  if (!answer) throw std::runtime_error(std::string("the bus refuses ") + method);
  // Those who watch the name learn of it.
  runFor(std::chrono::milliseconds(100));
}

void NotificationServer::serve(GDBusConnection*, const char*, const char*, const char*, const char* method,
                               GVariant* parameters, GDBusMethodInvocation* invocation, gpointer data) {
  auto& self = *static_cast<NotificationServer*>(data);
  if (std::string_view(method) == "Notify") return self.show(parameters, invocation);
  GVariantBuilder names;
  g_variant_builder_init(&names, G_VARIANT_TYPE("as"));
  for (const auto& name : self.capabilities) g_variant_builder_add(&names, "s", name.c_str());
  g_dbus_method_invocation_return_value(invocation, g_variant_new("(as)", &names));
}

void NotificationServer::show(GVariant* parameters, GDBusMethodInvocation* invocation) {
  if (refusal) {
    g_dbus_method_invocation_return_dbus_error(invocation, "test.Refused", refusal->c_str());
    return;
  }
  const char *application = nullptr, *icon = nullptr, *title = nullptr, *body = nullptr;
  GVariant *actions = nullptr, *hints = nullptr;
  Call call;
  g_variant_get(parameters, "(&su&s&s&s@as@a{sv}i)", &application, &call.replaces, &icon, &title, &body,
                &actions, &hints, &call.timeout);
  const GlibPtr<GVariant> ownedActions(actions), ownedHints(hints);
  call.application = application;
  call.icon = icon;
  call.title = title;
  call.body = body;
  call.actions = texts(actions);
  GVariantIter each;
  g_variant_iter_init(&each, hints);
  GVariant* value = nullptr;
  for (const char* name = nullptr; g_variant_iter_next(&each, "{&sv}", &name, &value);) {
    const GlibPtr<GVariant> owned(value);
    const GlibPtr<char> printed(g_variant_print(value, FALSE));
    call.hints[name] = printed.get();
  }
  calls.push_back(call);
  g_dbus_method_invocation_return_value(invocation,
                                        g_variant_new("(u)", call.replaces != 0 ? call.replaces : next++));
}

}  // namespace orvalle::contract
