#include "platform/linux/base_folders.h"

#include <pwd.h>
#include <unistd.h>

#include <array>

namespace orvalle::platform::linuxos {
namespace {

namespace fs = std::filesystem;

/// GLib gives what stands in HOME, even when that is nothing.
fs::path accountHome() {
  passwd entry{};
  passwd* found = nullptr;
  std::array<char, 16384> texts;
  if (::getpwuid_r(::getuid(), &entry, texts.data(), texts.size(), &found) != 0 || !found) return "/";
  return found->pw_dir;
}

}  // namespace

fs::path homeFolder(const Environment& environment) {
  const fs::path given = environment.variable("HOME").value_or("");
  return given.is_absolute() ? given : accountHome();
}

fs::path baseFolder(const Environment& environment, const char* variable, const char* usual) {
  const fs::path given = environment.variable(variable).value_or("");
  return given.is_absolute() ? given : homeFolder(environment) / usual;
}

}  // namespace orvalle::platform::linuxos
