#pragma once

#include <gio/gio.h>

#include <stdexcept>

#include "platform/linux/glib_ptr.h"

namespace orvalle::contract {

/// A connection of a test's own to the bus at this address, as another process has one.
inline platform::linuxos::GObjectPtr<GDBusConnection> busAt(const char* address) {
  auto bus = platform::linuxos::GObjectPtr<GDBusConnection>::adopt(g_dbus_connection_new_for_address_sync(
      address,
      static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                        G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
      nullptr, nullptr, nullptr));
  if (!bus) throw std::runtime_error("no bus");
  return bus;
}

/// The same to the session's bus, beside the program's.
inline platform::linuxos::GObjectPtr<GDBusConnection> ownBus() {
  const platform::linuxos::GlibPtr<char> address(
      g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
  return busAt(address.get());
}

}  // namespace orvalle::contract
