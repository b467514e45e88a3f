#include "platform/linux/web_profile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>

namespace orvalle::platform::linuxos {
namespace {

constexpr int kPrivateFolder = 0700;
constexpr mode_t kPrivateFile = 0600;

/// The folder under `base`, made if need be, for the user only.
std::string privateFolder(const char* base, const char* name) {
  const GlibPtr<char> path(g_build_filename(base, name, nullptr));
  g_mkdir_with_parents(path.get(), kPrivateFolder);
  return path.get();
}

/// Makes the file before its database does, because the database would take the process's usual mode, and
/// gives the files beside it that of the first one.
void makePrivateFile(const std::string& path) {
  const int file = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, kPrivateFile);
  if (file < 0) return;
  fchmod(file, kPrivateFile);
  close(file);
}

void refuseDownload(WebKitWebContext*, WebKitDownload* download, gpointer) {
  webkit_download_cancel(download);
}

}  // namespace

GObjectPtr<WebKitWebContext> makeWebProfile() {
  const std::string program = privateFolder(g_get_user_data_dir(), "Orvalle");
  const std::string data = privateFolder(program.c_str(), "web");
  const std::string cache = privateFolder(g_get_user_cache_dir(), "Orvalle");
  const auto manager = GObjectPtr<WebKitWebsiteDataManager>::adopt(webkit_website_data_manager_new(
      "base-data-directory", data.c_str(), "base-cache-directory", cache.c_str(), nullptr));
  auto context =
      GObjectPtr<WebKitWebContext>::adopt(webkit_web_context_new_with_website_data_manager(manager.get()));

  const std::string cookies = data + "/cookies.sqlite";
  makePrivateFile(cookies);
  webkit_cookie_manager_set_persistent_storage(webkit_website_data_manager_get_cookie_manager(manager.get()),
                                               cookies.c_str(), WEBKIT_COOKIE_PERSISTENT_STORAGE_SQLITE);
  g_signal_connect(context.get(), "download-started", G_CALLBACK(refuseDownload), nullptr);
  return context;
}

}  // namespace orvalle::platform::linuxos
