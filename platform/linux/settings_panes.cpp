#include "platform/settings_panes.h"

#include <gio/gdesktopappinfo.h>

#include <array>
#include <string>

#include "platform/linux/desktop_kind.h"
#include "platform/linux/display_choice.h"
#include "platform/linux/factory.h"
#include "platform/linux/glib_ptr.h"

namespace orvalle::platform::linuxos {
namespace {

/// The desktop entry of a desktop's own settings for notifications.
struct Entry {
  DesktopKind desktop;
  const char* id;
};
constexpr std::array kEntries = {
    Entry{DesktopKind::Gnome, "gnome-notifications-panel.desktop"},
    Entry{DesktopKind::Kde, "kcm_notifications.desktop"},
    Entry{DesktopKind::Xfce, "xfce4-notifyd-config.desktop"},
};

class DesktopSettings final : public SettingsPanes {
 public:
  DesktopSettings(NativeApplication& application, const Environment& environment, const UserFolders& folders)
      : application_(application.gtk()), environment_(environment), folders_(folders) {}

  void open(SettingsPane pane) override {
    switch (pane) {
      case SettingsPane::Notifications:
        return openNotifications();
      case SettingsPane::Documents:
        return showProperties(folders_.documents());
    }
  }

 private:
  /// The settings of the desktop that runs; where it has none, of whichever is installed.
  void openNotifications() {
    const auto desktop = desktopKind(environment_);
    for (const auto& entry : kEntries) {
      if (entry.desktop == desktop && launch(entry.id)) return;
    }
    for (const auto& entry : kEntries) {
      if (entry.desktop != desktop && launch(entry.id)) return;
    }
  }

  static bool launch(const char* id) {
    const auto entry = GObjectPtr<GDesktopAppInfo>::adopt(g_desktop_app_info_new(id));
    if (!entry) return false;
    const auto context =
        GObjectPtr<GdkAppLaunchContext>::adopt(gdk_display_get_app_launch_context(gdk_display_get_default()));
    gdk_app_launch_context_set_timestamp(context.get(), gtk_get_current_event_time());
    hideChoices(G_APP_LAUNCH_CONTEXT(context.get()));
    return g_app_info_launch(G_APP_INFO(entry.get()), nullptr, G_APP_LAUNCH_CONTEXT(context.get()), nullptr);
  }

  void showProperties(const std::filesystem::path& folder) {
    GDBusConnection* bus = g_application_get_dbus_connection(G_APPLICATION(application_));
    const GlibPtr<char> url(g_filename_to_uri(folder.c_str(), nullptr, nullptr));
    if (!bus || !url) return;
    const std::array<const char*, 2> urls = {url.get(), nullptr};
    g_dbus_connection_call(bus, "org.freedesktop.FileManager1", "/org/freedesktop/FileManager1",
                           "org.freedesktop.FileManager1", "ShowItemProperties",
                           g_variant_new("(^ass)", urls.data(), ""), nullptr, G_DBUS_CALL_FLAGS_NONE, -1,
                           nullptr, nullptr, nullptr);
  }

  GtkApplication* application_;
  const Environment& environment_;
  const UserFolders& folders_;
};

}  // namespace

std::unique_ptr<SettingsPanes> makeSettingsPanes(NativeApplication& application,
                                                 const Environment& environment, const UserFolders& folders) {
  return std::make_unique<DesktopSettings>(application, environment, folders);
}

}  // namespace orvalle::platform::linuxos
