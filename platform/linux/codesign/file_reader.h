#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace orvalle::platform::linuxos {

/// Reads the regular file at `path` piece by piece. False when it is none, cannot be read, or is longer than
/// `longest`. A link at its end is not followed, and nothing else than a file is waited for.
bool readFile(const std::filesystem::path& path, const std::function<void(std::string_view piece)>& piece,
              std::uintmax_t longest = UINTMAX_MAX);

/// The whole of it.
std::optional<std::string> readFile(const std::filesystem::path& path, std::uintmax_t longest);

}  // namespace orvalle::platform::linuxos
