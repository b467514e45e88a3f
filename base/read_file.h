#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>

namespace orvalle::base {

/// The whole contents of a regular file of at most `limit` bytes. Absent when there is no such file, when it
/// cannot be read, and for a symbolic link. Never waits for another process.
std::optional<std::string> readFile(const std::filesystem::path& path, std::size_t limit);

}  // namespace orvalle::base
