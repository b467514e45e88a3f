#pragma once

#include <filesystem>

#include "platform/environment.h"

namespace orvalle::platform::linuxos {

/// The user's home folder: HOME, and where that is no absolute path the account's.
std::filesystem::path homeFolder(const Environment& environment);

/// Where a desktop keeps one kind of the user's files: what `variable` says, such as XDG_CONFIG_HOME, and
/// where that is no absolute path `usual` in the home folder.
std::filesystem::path baseFolder(const Environment& environment, const char* variable, const char* usual);

}  // namespace orvalle::platform::linuxos
