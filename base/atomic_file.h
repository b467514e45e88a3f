#pragma once

#include <filesystem>
#include <string_view>
#include <system_error>

namespace orvalle::base {

/// Replaces the contents of `path` so that a crash at any moment leaves the old or the new file whole: writes
/// a temporary file with the permission bits `mode` in the same folder, syncs it, renames it over `path` and
/// syncs the folder. A symbolic link at `path` is itself replaced, never followed. On failure the old file
/// stays as it was, the temporary one is gone, and the reason is returned; an empty code means success.
/// Blocks on the disk.
[[nodiscard]] std::error_code replaceFile(const std::filesystem::path& path, std::string_view contents,
                                          std::filesystem::perms mode);

}  // namespace orvalle::base
