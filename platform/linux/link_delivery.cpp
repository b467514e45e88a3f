#include "platform/linux/link_delivery.h"

#include "platform/linux/running_instance.h"

namespace orvalle::platform::linuxos {
namespace {

constexpr char kLinks[] = "app.orvalle.Orvalle.Links";
constexpr char kDescription[] = R"xml(<node>
  <interface name="app.orvalle.Orvalle.Links">
    <method name="Open">
      <arg name="uris" type="as" direction="in"/>
      <arg name="platform_data" type="a{sv}" direction="in"/>
    </method>
  </interface>
</node>)xml";

std::vector<std::string> texts(GVariant* list) {
  std::vector<std::string> found;
  GVariantIter iter;
  g_variant_iter_init(&iter, list);
  const char* text = nullptr;
  while (g_variant_iter_next(&iter, "&s", &text)) found.emplace_back(text);
  return found;
}

}  // namespace

LinkDelivery::LinkDelivery()
    : bus_(GObjectPtr<GDBusConnection>::adopt(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr))) {
  if (!bus_) return;
  static constexpr GDBusInterfaceVTable kTable{called, nullptr, nullptr, {}};
  GDBusNodeInfo* node = g_dbus_node_info_new_for_xml(kDescription, nullptr);
  object_ = g_dbus_connection_register_object(bus_.get(), kObjectPath, node->interfaces[0], &kTable, this,
                                              nullptr, nullptr);
  g_dbus_node_info_unref(node);
  filter_ = g_dbus_connection_add_filter(bus_.get(), redirect, nullptr, nullptr);
}

LinkDelivery::~LinkDelivery() {
  if (!bus_) return;
  g_dbus_connection_remove_filter(bus_.get(), filter_);
  if (object_ != 0) g_dbus_connection_unregister_object(bus_.get(), object_);
}

/// On the bus's own thread: it touches nothing but the message.
GDBusMessage* LinkDelivery::redirect(GDBusConnection*, GDBusMessage* message, gboolean incoming, gpointer) {
  if (!incoming || g_dbus_message_get_message_type(message) != G_DBUS_MESSAGE_TYPE_METHOD_CALL ||
      g_strcmp0(g_dbus_message_get_path(message), kObjectPath) != 0 ||
      g_strcmp0(g_dbus_message_get_interface(message), "org.freedesktop.Application") != 0 ||
      g_strcmp0(g_dbus_message_get_member(message), "Open") != 0) {
    return message;
  }
  GDBusMessage* ours = g_dbus_message_copy(message, nullptr);
  if (!ours) return message;
  g_dbus_message_set_interface(ours, kLinks);
  g_object_unref(message);
  return ours;
}

void LinkDelivery::called(GDBusConnection*, const char*, const char*, const char*, const char*,
                          GVariant* parameters, GDBusMethodInvocation* invocation, gpointer self) {
  GVariant* list = nullptr;
  GVariant* data = nullptr;
  g_variant_get(parameters, "(@as@a{sv})", &list, &data);
  const GlibPtr<GVariant> urls(list);
  const GlibPtr<GVariant> platformData(data);
  // Whoever asks need not wait until it is done.
  g_dbus_method_invocation_return_value(invocation, nullptr);
  const auto& delivery = *static_cast<LinkDelivery*>(self);
  if (delivery.onOpen) delivery.onOpen(texts(urls.get()), platformData.get());
}

}  // namespace orvalle::platform::linuxos
