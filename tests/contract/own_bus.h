#pragma once

#include <gio/gio.h>

#include <stdexcept>

#include "platform/linux/glib_ptr.h"

namespace orvalle::contract {

/// A connection to the session's bus beside the program's, as another process has one.
inline platform::linuxos::GObjectPtr<GDBusConnection> ownBus() {
  using namespace platform::linuxos;
  const GlibPtr<char> address(g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
  auto bus = GObjectPtr<GDBusConnection>::adopt(g_dbus_connection_new_for_address_sync(
      address.get(),
      static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                        G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
      nullptr, nullptr, nullptr));
  if (!bus) throw std::runtime_error("no session bus");
  return bus;
}

}  // namespace orvalle::contract
