#include "platform/macos/restart_command.h"

namespace orvalle::platform::macos {

Command restartCommand(const std::filesystem::path& bundle) {
  return {"/bin/sh", {"-c", "sleep 1; /usr/bin/open -n \"" + bundle.string() + "\""}};
}

}  // namespace orvalle::platform::macos
