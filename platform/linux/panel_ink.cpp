#include "platform/linux/panel_ink.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>
#include <utility>

namespace orvalle::platform::linuxos {
namespace {

constexpr char kXfconf[] = "org.xfce.Xfconf";
constexpr char kXfconfPath[] = "/org/xfce/Xfconf";
constexpr char kPanelChannel[] = "xfce4-panel";
constexpr char kDarkMode[] = "/panels/dark-mode";

bool hasDarkBar() {
  const char* desktops = g_getenv("XDG_CURRENT_DESKTOP");
  if (!desktops) return false;
  constexpr std::array<std::string_view, 4> kDark{"GNOME", "Unity", "X-Cinnamon", "Budgie"};
  char** names = g_strsplit(desktops, ":", -1);
  const bool dark =
      std::any_of(kDark.begin(), kDark.end(), [&](auto name) { return g_strv_contains(names, name.data()); });
  g_strfreev(names);
  return dark;
}

std::uint8_t channel(double value) {
  return static_cast<std::uint8_t>(std::lround(std::clamp(value, 0.0, 1.0) * 255));
}

/// The text colour that the GTK theme, or its dark variant, gives to a panel.
Ink themeInk(bool darkVariant) {
  const auto context = GObjectPtr<GtkStyleContext>::adopt(gtk_style_context_new());
  GtkWidgetPath* path = gtk_widget_path_new();
  gtk_widget_path_append_type(path, GTK_TYPE_WINDOW);
  gtk_widget_path_iter_set_object_name(path, -1, "window");
  for (const char* name : {"background", "xfce4-panel", "panel"}) {
    gtk_widget_path_iter_add_class(path, -1, name);
  }
  gtk_style_context_set_path(context.get(), path);
  gtk_widget_path_unref(path);
  if (darkVariant) {
    char* theme = nullptr;
    g_object_get(gtk_settings_get_default(), "gtk-theme-name", &theme, nullptr);
    gtk_style_context_add_provider(context.get(),
                                   GTK_STYLE_PROVIDER(gtk_css_provider_get_named(theme, "dark")),
                                   GTK_STYLE_PROVIDER_PRIORITY_SETTINGS + 1);
    g_free(theme);
  }
  GdkRGBA colour;
  gtk_style_context_get_color(context.get(), GTK_STATE_FLAG_NORMAL, &colour);
  return {channel(colour.red), channel(colour.green), channel(colour.blue)};
}

}  // namespace

PanelInk::PanelInk(std::function<void()> changed)
    : changed_(std::move(changed)),
      cancellable_(GObjectPtr<GCancellable>::adopt(g_cancellable_new())),
      theme_(gtk_settings_get_default(), "notify::gtk-theme-name",
             G_CALLBACK(+[](GObject*, GParamSpec*, PanelInk* self) { self->forget(); }), this),
      preference_(gtk_settings_get_default(), "notify::gtk-application-prefer-dark-theme",
                  G_CALLBACK(+[](GObject*, GParamSpec*, PanelInk* self) { self->forget(); }), this) {}

PanelInk::~PanelInk() {
  g_cancellable_cancel(cancellable_.get());
  if (!bus_) return;
  g_bus_unwatch_name(watch_);
  g_dbus_connection_signal_unsubscribe(bus_.get(), subscription_);
}

Ink PanelInk::current() {
  if (!ink_) ink_ = hasDarkBar() ? Ink{255, 255, 255} : themeInk(darkPanel_);
  return *ink_;
}

void PanelInk::forget() {
  ink_.reset();
  changed_();
}

void PanelInk::follow(GDBusConnection* bus) {
  bus_ = GObjectPtr<GDBusConnection>::share(bus);
  subscription_ = g_dbus_connection_signal_subscribe(
      bus, kXfconf, kXfconf, nullptr, kXfconfPath, kPanelChannel, G_DBUS_SIGNAL_FLAGS_NONE,
      [](GDBusConnection*, const char*, const char*, const char*, const char*, GVariant* parameters,
         gpointer data) {
        // PropertyChanged (ssv) and PropertyRemoved (ss) alike: whatever it is now is asked for.
        if (!g_variant_is_of_type(parameters, G_VARIANT_TYPE("(ss*)")) &&
            !g_variant_is_of_type(parameters, G_VARIANT_TYPE("(ss)"))) {
          return;
        }
        const GlibPtr<GVariant> property(g_variant_get_child_value(parameters, 1));
        if (std::string_view(g_variant_get_string(property.get(), nullptr)) == kDarkMode) {
          static_cast<PanelInk*>(data)->ask();
        }
      },
      this, nullptr);
  watch_ = g_bus_watch_name_on_connection(
      bus, kXfconf, G_BUS_NAME_WATCHER_FLAGS_NONE,
      [](GDBusConnection*, const char*, const char*, gpointer data) { static_cast<PanelInk*>(data)->ask(); },
      nullptr, this, nullptr);
}

void PanelInk::ask() {
  g_dbus_connection_call(
      bus_.get(), kXfconf, kXfconfPath, kXfconf, "GetProperty",
      g_variant_new("(ss)", kPanelChannel, kDarkMode), G_VARIANT_TYPE("(v)"), G_DBUS_CALL_FLAGS_NO_AUTO_START,
      -1, cancellable_.get(),
      [](GObject* source, GAsyncResult* result, gpointer data) {
        GError* failure = nullptr;
        const GlibPtr<GVariant> answer(
            g_dbus_connection_call_finish(G_DBUS_CONNECTION(source), result, &failure));
        const GlibPtr<GError> error(failure);
        if (error && g_error_matches(error.get(), G_IO_ERROR, G_IO_ERROR_CANCELLED)) return;
        bool dark = false;
        if (answer) {
          GVariant* value = nullptr;
          g_variant_get(answer.get(), "(v)", &value);
          const GlibPtr<GVariant> owned(value);
          dark = g_variant_is_of_type(value, G_VARIANT_TYPE_BOOLEAN) && g_variant_get_boolean(value);
        }
        static_cast<PanelInk*>(data)->setDarkPanel(dark);
      },
      this);
}

void PanelInk::setDarkPanel(bool dark) {
  if (std::exchange(darkPanel_, dark) != dark) forget();
}

}  // namespace orvalle::platform::linuxos
