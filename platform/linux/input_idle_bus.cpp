#include <optional>

#include "platform/linux/glib_ptr.h"
#include "platform/linux/input_idle_sources.h"

namespace orvalle::platform::linuxos {
namespace {

/// A desktop's own service. All of them answer in milliseconds.
struct Service {
  const char* name;
  const char* path;
  const char* interface;
  const char* method;
};

constexpr Service kServices[] = {
    {"org.gnome.Mutter.IdleMonitor", "/org/gnome/Mutter/IdleMonitor/Core", "org.gnome.Mutter.IdleMonitor",
     "GetIdletime"},
    {"org.freedesktop.ScreenSaver", "/ScreenSaver", "org.freedesktop.ScreenSaver", "GetSessionIdleTime"},
};

/// A desktop that takes longer is not to hold up the program.
constexpr int kPatienceMilliseconds = 500;

std::optional<guint64> milliseconds(GVariant* answer) {
  const GlibPtr<GVariant> value(g_variant_n_children(answer) == 1 ? g_variant_get_child_value(answer, 0)
                                                                  : nullptr);
  if (!value) return {};
  if (g_variant_is_of_type(value.get(), G_VARIANT_TYPE_UINT64)) return g_variant_get_uint64(value.get());
  if (g_variant_is_of_type(value.get(), G_VARIANT_TYPE_UINT32)) return g_variant_get_uint32(value.get());
  return {};
}

class BusInputIdle final : public InputIdle {
 public:
  double secondsSinceInput() override {
    const auto bus = GObjectPtr<GDBusConnection>::adopt(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
    if (!bus) return 0;
    for (const auto& service : kServices) {
      const GlibPtr<GVariant> answer(g_dbus_connection_call_sync(
          bus.get(), service.name, service.path, service.interface, service.method, nullptr, nullptr,
          G_DBUS_CALL_FLAGS_NO_AUTO_START, kPatienceMilliseconds, nullptr, nullptr));
      if (const auto idle = answer ? milliseconds(answer.get()) : std::nullopt)
        return static_cast<double>(*idle) / 1000;
    }
    return 0;
  }
};

}  // namespace

std::unique_ptr<InputIdle> makeBusInputIdle() {
  return std::make_unique<BusInputIdle>();
}

}  // namespace orvalle::platform::linuxos
