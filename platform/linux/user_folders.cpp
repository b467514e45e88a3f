#include "platform/user_folders.h"

#include <fstream>
#include <optional>
#include <string>
#include <string_view>

#include "platform/linux/base_folders.h"
#include "platform/linux/factory.h"

namespace orvalle::platform::linuxos {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kKey = "XDG_DOCUMENTS_DIR";
constexpr std::string_view kHome = "$HOME";

/// Without the separator that may stand at its end.
fs::path normal(const fs::path& path) {
  const auto lexical = path.lexically_normal();
  return lexical.has_filename() ? lexical : lexical.parent_path();
}

std::string_view withoutBlanks(std::string_view text) {
  const auto first = text.find_first_not_of(" \t");
  return first == std::string_view::npos ? std::string_view() : text.substr(first);
}

/// The folder that a line of `user-dirs.dirs` names, such as XDG_DOCUMENTS_DIR="$HOME/Documenti"; absent for
/// any other line, and where it names none.
std::optional<fs::path> documentsIn(std::string_view line, const fs::path& home) {
  line = withoutBlanks(line);
  if (!line.starts_with(kKey)) return {};
  line = withoutBlanks(line.substr(kKey.size()));
  if (!line.starts_with('=')) return {};
  line = withoutBlanks(line.substr(1));
  if (!line.starts_with('"')) return {};
  line.remove_prefix(1);
  std::string folder;
  if (line.starts_with(kHome)) {
    line.remove_prefix(kHome.size());
    if (!line.starts_with('/') && !line.starts_with('"')) return {};
    folder = home.string();
  } else if (!line.starts_with('/')) {
    return {};
  }
  for (std::size_t i = 0; i < line.size(); ++i) {
    if (line[i] == '"') return folder;
    if (line[i] == '\\' && i + 1 < line.size()) ++i;
    folder += line[i];
  }
  return {};
}

/// The folders that the desktop names. GLib knows how to read them too, but goes on with a choice that the
/// user has taken back.
class DesktopFolders final : public UserFolders {
 public:
  explicit DesktopFolders(const Environment& environment) : environment_(environment) {}

  fs::path documents() const override {
    const auto home = homeFolder(environment_);
    std::optional<fs::path> chosen;
    std::ifstream file(baseFolder(environment_, "XDG_CONFIG_HOME", ".config") / "user-dirs.dirs");
    for (std::string line; std::getline(file, line);) {
      if (const auto found = documentsIn(line, home)) chosen = found;
    }
    // The home folder itself is how the desktop writes that there is none.
    return chosen && normal(*chosen) != normal(home) ? *chosen : home / "Documents";
  }

  fs::path applicationSupport() const override {
    return baseFolder(environment_, "XDG_DATA_HOME", ".local/share");
  }

  /// What is named here is also read by a script with another working folder.
  fs::path temporary() const override {
    const fs::path given = environment_.variable("TMPDIR").value_or("");
    return given.is_absolute() ? given : "/tmp";
  }

 private:
  const Environment& environment_;
};

}  // namespace

std::unique_ptr<UserFolders> makeUserFolders(const Environment& environment) {
  return std::make_unique<DesktopFolders>(environment);
}

}  // namespace orvalle::platform::linuxos
