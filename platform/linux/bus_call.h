#pragma once

#include <functional>
#include <string>

#include "platform/linux/glib_ptr.h"

namespace orvalle::platform::linuxos {

/// The answer to a call over the bus: a value, or what went wrong.
struct BusAnswer {
  GlibPtr<GVariant> value;
  std::string error;
};

/// A method of an object on the bus.
struct BusMethod {
  const char* name;
  const char* path;
  const char* interface;
  const char* method;
};

inline constexpr const char* kBusName = "org.freedesktop.DBus";
inline constexpr const char* kBusPath = "/org/freedesktop/DBus";

/// Calls the method; `done` is called once, on the main loop, never inside this call. Takes `parameters` over
/// if they are floating.
void callBus(GDBusConnection* bus, const BusMethod& method, GVariant* parameters,
             std::function<void(BusAnswer)> done);

}  // namespace orvalle::platform::linuxos
