#include "platform/workspace.h"

#include "platform/linux/display_choice.h"
#include "platform/linux/factory.h"
#include "platform/linux/glib_ptr.h"

namespace orvalle::platform::linuxos {
namespace {

class DesktopWorkspace final : public Workspace {
 public:
  void open(const std::string& url) override { launchHandler(url.c_str()); }

  void openFolder(const std::filesystem::path& folder) override {
    std::error_code error;
    if (!std::filesystem::is_directory(folder, error)) return;
    const GlibPtr<char> url(g_filename_to_uri(folder.c_str(), nullptr, nullptr));
    if (url) launchHandler(url.get());
  }

 private:
  static void launchHandler(const char* url) {
    // The display's context gives the handler the start-up notification that lets it take the focus.
    const auto context =
        GObjectPtr<GdkAppLaunchContext>::adopt(gdk_display_get_app_launch_context(gdk_display_get_default()));
    gdk_app_launch_context_set_timestamp(context.get(), gtk_get_current_event_time());
    hideChoices(G_APP_LAUNCH_CONTEXT(context.get()));
    g_app_info_launch_default_for_uri_async(url, G_APP_LAUNCH_CONTEXT(context.get()), nullptr, nullptr,
                                            nullptr);
  }
};

}  // namespace

std::unique_ptr<Workspace> makeWorkspace() {
  return std::make_unique<DesktopWorkspace>();
}

}  // namespace orvalle::platform::linuxos
