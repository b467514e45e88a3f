#include "platform/linux/bus_call.h"

#include <utility>

namespace orvalle::platform::linuxos {
namespace {

using Done = std::function<void(BusAnswer)>;

/// Long enough for a service that has to be started first.
constexpr int kTimeoutMilliseconds = 15'000;

void answered(GObject* bus, GAsyncResult* result, gpointer data) {
  const std::unique_ptr<Done> done(static_cast<Done*>(data));
  GError* error = nullptr;
  BusAnswer answer;
  answer.value.reset(g_dbus_connection_call_finish(G_DBUS_CONNECTION(bus), result, &error));
  if (error) {
    const GlibPtr<GError> owned(error);
    g_dbus_error_strip_remote_error(error);
    answer.error = error->message;
  }
  (*done)(std::move(answer));
}

}  // namespace

void callBus(GDBusConnection* bus, const BusMethod& method, GVariant* parameters, Done done) {
  g_dbus_connection_call(bus, method.name, method.path, method.interface, method.method, parameters, nullptr,
                         G_DBUS_CALL_FLAGS_NONE, kTimeoutMilliseconds, nullptr, answered,
                         new Done(std::move(done)));
}

}  // namespace orvalle::platform::linuxos
