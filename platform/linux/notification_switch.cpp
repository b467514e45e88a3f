#include "platform/linux/notification_switch.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <string>
#include <utility>

#include "platform/linux/base_folders.h"
#include "platform/linux/bus_call.h"
#include "platform/linux/desktop_kind.h"

namespace orvalle::platform::linuxos {
namespace {

constexpr const char* kGnomeSchema = "org.gnome.desktop.notifications.application";
constexpr const char* kGnomePath = "/org/gnome/desktop/notifications/application/app-orvalle-orvalle/";
constexpr const char* kKdeGroup = "[Applications][app.orvalle.Orvalle]";
/// By the id of the desktop entry, where the notification tells it; older servers go by the program's name.
constexpr std::array<const char*, 2> kXfceNames = {"app.orvalle.Orvalle", "Orvalle"};

struct SchemaDeleter {
  void operator()(GSettingsSchema* schema) const { g_settings_schema_unref(schema); }
};

bool offInGnome() {
  // GLib ends the program over a schema that is not installed.
  auto* source = g_settings_schema_source_get_default();
  const std::unique_ptr<GSettingsSchema, SchemaDeleter> schema(
      source ? g_settings_schema_source_lookup(source, kGnomeSchema, TRUE) : nullptr);
  if (!schema || !g_settings_schema_has_key(schema.get(), "enable")) return false;
  const auto settings = GObjectPtr<GSettings>::adopt(g_settings_new_full(schema.get(), nullptr, kGnomePath));
  return !g_settings_get_boolean(settings.get(), "enable");
}

/// Reads by hand: names of groups inside names of groups are no part of the usual format.
bool offInKde(const Environment& environment) {
  std::ifstream file(baseFolder(environment, "XDG_CONFIG_HOME", ".config") / "plasmanotifyrc");
  bool inGroup = false;
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with('[')) inGroup = line == kKdeGroup;
    if (inGroup && line == "ShowPopups=false") return true;
  }
  return false;
}

/// Whether the list, of texts or of values that are texts, has our name in it.
bool namesUs(GVariant* list) {
  if (!g_variant_is_container(list)) return false;
  for (gsize i = 0; i < g_variant_n_children(list); ++i) {
    GlibPtr<GVariant> entry(g_variant_get_child_value(list, i));
    if (g_variant_is_of_type(entry.get(), G_VARIANT_TYPE_VARIANT))
      entry.reset(g_variant_get_variant(entry.get()));
    if (!g_variant_is_of_type(entry.get(), G_VARIANT_TYPE_STRING)) continue;
    const auto isEntry = [&](const char* name) {
      return g_str_equal(g_variant_get_string(entry.get(), nullptr), name);
    };
    if (std::any_of(kXfceNames.begin(), kXfceNames.end(), isEntry)) return true;
  }
  return false;
}

void askXfce(GDBusConnection* bus, std::function<void(bool)> done) {
  callBus(bus, {"org.xfce.Xfconf", "/org/xfce/Xfconf", "org.xfce.Xfconf", "GetProperty"},
          g_variant_new("(ss)", "xfce4-notifyd", "/applications/muted_applications"),
          [done = std::move(done)](const BusAnswer& answer) {
            // A property that was never set is an error.
            if (!answer.value || !g_variant_is_of_type(answer.value.get(), G_VARIANT_TYPE("(v)")))
              return done(false);
            GVariant* list = nullptr;
            g_variant_get(answer.value.get(), "(v)", &list);
            const GlibPtr<GVariant> owned(list);
            done(namesUs(list));
          });
}

}  // namespace

void askNotificationSwitch(GDBusConnection* bus, const Environment& environment,
                           std::function<void(bool)> done) {
  switch (desktopKind(environment)) {
    case DesktopKind::Xfce:
      return askXfce(bus, std::move(done));
    case DesktopKind::Kde:
      return done(offInKde(environment));
    case DesktopKind::Gnome:
      return done(offInGnome());
  }
}

}  // namespace orvalle::platform::linuxos
