#pragma once

#include <filesystem>

#include "platform/package_tools.h"

namespace orvalle::platform::macos {

/// Opens the bundle as a new program one second from now, when this one will have ended. The path stands in
/// the shell's double quotes as it is.
Command restartCommand(const std::filesystem::path& bundle);

}  // namespace orvalle::platform::macos
