#pragma once

#include <filesystem>
#include <system_error>

namespace orvalle::base {

/// Makes the folder, with those above it that are missing, for the user only. One that is there already stays
/// as it is. An empty code means that the folder is there.
[[nodiscard]] std::error_code makePrivateFolder(const std::filesystem::path& path);

}  // namespace orvalle::base
