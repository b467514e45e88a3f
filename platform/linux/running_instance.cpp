#include "platform/linux/running_instance.h"

#include "base/text.h"
#include "platform/linux/glib_ptr.h"

namespace orvalle::platform::linuxos {
namespace {

constexpr int kTimeoutMilliseconds = 3000;
/// One that ends has the diary and the settings to write, on whatever disk they are.
constexpr int kEndMilliseconds = 10000;
/// One that is still there then is stuck, and is handed over to like any other.
constexpr int kReplacedMilliseconds = 60000;

GObjectPtr<GDBusConnection> sessionBus() {
  return GObjectPtr<GDBusConnection>::adopt(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
}

struct Answer {
  GlibPtr<GVariant> value;
  GlibPtr<GError> error;
};

Answer call(GDBusConnection* bus, const char* name, const char* path, const char* interface,
            const char* method, GVariant* parameters) {
  GError* error = nullptr;
  GVariant* value =
      g_dbus_connection_call_sync(bus, name, path, interface, method, parameters, nullptr,
                                  G_DBUS_CALL_FLAGS_NO_AUTO_START, kTimeoutMilliseconds, nullptr, &error);
  return {GlibPtr<GVariant>(value), GlibPtr<GError>(error)};
}

Answer callBus(GDBusConnection* bus, const char* method, const char* name) {
  return call(bus, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", method,
              g_variant_new("(s)", name));
}

bool hasOwner(GDBusConnection* bus, const char* name) {
  const auto answer = callBus(bus, "NameHasOwner", name);
  gboolean owned = FALSE;
  if (answer.value) g_variant_get(answer.value.get(), "(b)", &owned);
  return owned;
}

/// Whether the owner of a name has gone within this time. A connection lasts as long as its process.
bool waitUntilGone(GDBusConnection* bus, const char* owner, int milliseconds) {
  constexpr int kPollMilliseconds = 20;
  for (int waited = 0; waited < milliseconds; waited += kPollMilliseconds) {
    if (!hasOwner(bus, owner)) return true;
    g_usleep(kPollMilliseconds * 1000);
  }
  return false;
}

/// The proof that the user's own click stands behind the request: with it the window may take the focus.
GVariant* startupData() {
  GVariantBuilder builder;
  g_variant_builder_init(&builder, G_VARIANT_TYPE_VARDICT);
  const auto add = [&](const char* key, const char* variable) {
    const char* text = g_getenv(variable);
    if (text && g_utf8_validate(text, -1, nullptr)) {
      g_variant_builder_add(&builder, "{sv}", key, g_variant_new_string(text));
    }
  };
  add("desktop-startup-id", "DESKTOP_STARTUP_ID");
  add("activation-token", "XDG_ACTIVATION_TOKEN");
  return g_variant_builder_end(&builder);
}

/// Asks the running instance for something; false when it was not there to take it.
bool ask(const char* method, GVariant* parameters) {
  const GlibPtr<GVariant> owned(g_variant_ref_sink(parameters));
  const auto bus = sessionBus();
  if (!bus) return false;
  const auto answer =
      call(bus.get(), kApplicationId, kObjectPath, "org.freedesktop.Application", method, owned.get());
  // The request of one that is busy has arrived and will have its turn.
  return !answer.error || g_error_matches(answer.error.get(), G_IO_ERROR, G_IO_ERROR_TIMED_OUT);
}

}  // namespace

bool activateRunningInstance() {
  return ask("Activate", g_variant_new("(@a{sv})", startupData()));
}

bool openInRunningInstance(const std::vector<std::string>& urls) {
  GVariantBuilder list;
  g_variant_builder_init(&list, G_VARIANT_TYPE_STRING_ARRAY);
  for (const auto& url : urls) {
    if (base::isValidUtf8(url)) g_variant_builder_add(&list, "s", url.c_str());
  }
  return ask("Open", g_variant_new("(as@a{sv})", &list, startupData()));
}

bool actInRunningInstance(const char* action) {
  return ask("ActivateAction", g_variant_new("(sav@a{sv})", action, nullptr, startupData()));
}

bool quitRunningInstance() {
  const auto bus = sessionBus();
  if (!bus) return true;
  const auto found = callBus(bus.get(), "GetNameOwner", kApplicationId);
  if (!found.value) return true;
  const char* owner = nullptr;
  g_variant_get(found.value.get(), "(&s)", &owner);
  call(bus.get(), owner, kObjectPath, "org.freedesktop.Application", "ActivateAction",
       g_variant_new("(sava{sv})", "quit", nullptr, nullptr));
  return waitUntilGone(bus.get(), owner, kEndMilliseconds);
}

void awaitReplacedInstance() {
  if (!g_getenv(kAfterUpdate)) return;
  g_unsetenv(kAfterUpdate);
  if (const auto bus = sessionBus()) waitUntilGone(bus.get(), kApplicationId, kReplacedMilliseconds);
}

}  // namespace orvalle::platform::linuxos
