#include "platform/user_folders.h"

#include <string>

#include "platform/linux/factory.h"
#include "platform/linux/glib_ptr.h"

namespace orvalle::platform::linuxos {
namespace {

namespace fs = std::filesystem;

/// Without the separator that may stand at its end.
fs::path normal(const fs::path& path) {
  const auto lexical = path.lexically_normal();
  return lexical.has_filename() ? lexical : lexical.parent_path();
}

/// The folders that the desktop names in `user-dirs.dirs`.
class DesktopFolders final : public UserFolders {
 public:
  explicit DesktopFolders(const Environment& environment) : environment_(environment) {}

  fs::path documents() const override {
    const fs::path home = environment_.variable("HOME").value_or(g_get_home_dir());
    // The user may have chosen another one since.
    g_reload_user_special_dirs_cache();
    const char* chosen = g_get_user_special_dir(G_USER_DIRECTORY_DOCUMENTS);
    // The home folder itself is how the desktop writes that there is none.
    return chosen && normal(chosen) != normal(home) ? fs::path(chosen) : home / "Documents";
  }

  fs::path applicationSupport() const override {
    const fs::path given = environment_.variable("XDG_DATA_HOME").value_or("");
    // By the rules for these folders, one that is not absolute is no folder.
    if (given.is_absolute()) return given;
    return environment_.variable("HOME").value_or(g_get_home_dir()) / fs::path(".local/share");
  }

 private:
  const Environment& environment_;
};

}  // namespace

std::unique_ptr<UserFolders> makeUserFolders(const Environment& environment) {
  return std::make_unique<DesktopFolders>(environment);
}

}  // namespace orvalle::platform::linuxos
