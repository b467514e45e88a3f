#include "platform/linux/user_install.h"

#include <gio/gdesktopappinfo.h>

#include <array>
#include <string_view>
#include <system_error>

#include "base/atomic_file.h"
#include "base/read_file.h"
#include "platform/linux/glib_ptr.h"
#include "platform/linux/running_instance.h"

namespace orvalle::platform::linuxos {
namespace {

namespace fs = std::filesystem;

using Failure = std::optional<std::string>;

constexpr char kLinks[] = "x-scheme-handler/orvalle";
constexpr char kEntryGroup[] = "Desktop Entry";
constexpr std::size_t kFileLimit = 1 << 20;

const std::string kEntry = std::string("applications/") + kApplicationId + ".desktop";
const std::array kIcons = {std::string("icons/hicolor/scalable/apps/") + kApplicationId + ".svg",
                           std::string("icons/hicolor/symbolic/apps/") + kApplicationId + "-symbolic.svg"};

fs::path userData() {
  return g_get_user_data_dir();
}

struct KeyFileDeleter {
  void operator()(GKeyFile* file) const { g_key_file_unref(file); }
};
using KeyFile = std::unique_ptr<GKeyFile, KeyFileDeleter>;

/// A path as the first word of a command line in an entry. Quotes only where they are needed: some launchers
/// take them for a part of the name.
std::string commandWord(const fs::path& path) {
  constexpr std::string_view kPlain = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789/._-+";
  const auto& text = path.native();
  if (text.find_first_not_of(kPlain) == std::string::npos) return text;
  std::string word = "\"";
  for (const char c : text) {
    if (std::string_view("\"`$\\").find(c) != std::string_view::npos) word += '\\';
    word += c;
  }
  return word + '"';
}

/// Has the entry start the program from its bundle, in all its actions.
void leadTo(GKeyFile* entry, const fs::path& program) {
  std::size_t count = 0;
  char** groups = g_key_file_get_groups(entry, &count);
  for (std::size_t i = 0; i < count; ++i) {
    const GlibPtr<char> command(g_key_file_get_string(entry, groups[i], "Exec", nullptr));
    if (!command) continue;
    const std::string_view old = command.get();
    const auto blank = old.find(' ');
    const auto rest = blank == std::string_view::npos ? std::string_view() : old.substr(blank);
    g_key_file_set_string(entry, groups[i], "Exec", (commandWord(program) + std::string(rest)).c_str());
  }
  g_strfreev(groups);
  g_key_file_set_string(entry, kEntryGroup, "TryExec", program.c_str());
  // The bus does not know this bundle.
  g_key_file_remove_key(entry, kEntryGroup, "DBusActivatable", nullptr);
}

/// A file of the user's that we put there. One that is as it should be stays untouched: desktops look through
/// all that they know when something changes.
struct Placed {
  std::error_code error;
  bool changed = false;
};

Placed place(const fs::path& path, std::string_view contents) {
  if (base::readFile(path, kFileLimit) == contents) return {};
  std::error_code error;
  fs::create_directories(path.parent_path(), error);
  return {error ? error : base::replaceFile(path, contents, fs::perms(0644)), true};
}

Failure installEntry(const fs::path& bundle) {
  const KeyFile entry(g_key_file_new());
  GError* failure = nullptr;
  const auto flags = GKeyFileFlags(G_KEY_FILE_KEEP_COMMENTS | G_KEY_FILE_KEEP_TRANSLATIONS);
  if (!g_key_file_load_from_file(entry.get(), (bundle / "share" / kEntry).c_str(), flags, &failure)) {
    const GlibPtr<GError> owned(failure);
    return owned->message;
  }
  leadTo(entry.get(), bundle / "AppRun");
  gsize length = 0;
  const GlibPtr<char> text(g_key_file_to_data(entry.get(), &length, nullptr));
  const auto error = place(userData() / kEntry, {text.get(), length}).error;
  return error ? Failure(error.message()) : std::nullopt;
}

Failure installIcons(const fs::path& bundle) {
  bool changed = false;
  for (const auto& icon : kIcons) {
    const auto drawing = base::readFile(bundle / "share" / icon, kFileLimit);
    if (!drawing) return icon + " manca";
    const auto placed = place(userData() / icon, *drawing);
    if (placed.error) return placed.error.message();
    changed = changed || placed.changed;
  }
  if (!changed) return {};
  // By its time programs see that the theme has changed.
  std::error_code error;
  fs::last_write_time(userData() / "icons/hicolor", fs::file_time_type::clock::now(), error);
  return {};
}

Failure openLinks() {
  const auto program = GObjectPtr<GAppInfo>::adopt(
      G_APP_INFO(g_desktop_app_info_new_from_filename((userData() / kEntry).c_str())));
  GError* failure = nullptr;
  if (!program) return "la voce non si legge";
  if (g_app_info_set_as_default_for_type(program.get(), kLinks, &failure)) return {};
  const GlibPtr<GError> owned(failure);
  return owned->message;
}

}  // namespace

Failure installForUser(const fs::path& bundle) {
  // Entries have no way to write one in a program's name that desktops would understand.
  if (bundle.native().find('%') != std::string::npos)
    return "il percorso " + bundle.native() + " contiene «%»: sposta Orvalle.app altrove";
  if (const auto failure = installEntry(bundle)) return failure;
  if (const auto failure = installIcons(bundle)) return failure;
  return openLinks();
}

Failure renewForUser(const fs::path& bundle) {
  const KeyFile entry(g_key_file_new());
  if (!g_key_file_load_from_file(entry.get(), (userData() / kEntry).c_str(), G_KEY_FILE_NONE, nullptr))
    return {};
  const GlibPtr<char> program(g_key_file_get_string(entry.get(), kEntryGroup, "TryExec", nullptr));
  if (!program || bundle / "AppRun" != program.get()) return {};
  if (const auto failure = installEntry(bundle)) return failure;
  return installIcons(bundle);
}

Failure uninstallForUser() {
  g_app_info_reset_type_associations(kLinks);
  std::error_code error;
  fs::remove(userData() / kEntry, error);
  for (const auto& icon : kIcons) {
    if (!error) fs::remove(userData() / icon, error);
  }
  return error ? Failure(error.message()) : std::nullopt;
}

}  // namespace orvalle::platform::linuxos
