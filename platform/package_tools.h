#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <variant>
#include <vector>

namespace orvalle::platform {

/// A program with its arguments, none of which a shell ever sees.
struct Command {
  std::filesystem::path path;
  std::vector<std::string> arguments;
  /// The program that the user is told of, where `path` only starts it.
  std::filesystem::path tool = {};
};

/// The system's own programs for packages: archives that hold a bundle. What each of them prints is meant for
/// the user when it fails.
class PackageTools {
 public:
  virtual ~PackageTools() = default;
  /// Lists an archive.
  virtual Command list(const std::filesystem::path& archive) const = 0;
  /// What a listing comes to: the bytes that the contents need on a disk, or, for the user, why the archive
  /// must not be unpacked: it names a place outside the folder, or the listing makes no sense.
  virtual std::variant<std::uintmax_t, std::string> judge(const std::string& listing) const = 0;
  /// Unpacks an archive into a folder with all modes and links, and writes nowhere else.
  virtual Command unpack(const std::filesystem::path& archive, const std::filesystem::path& folder) const = 0;
  /// Succeeds when every file of the bundle is as its signature says.
  virtual Command verify(const std::filesystem::path& bundle) const = 0;
  /// Two commands for a shell script: one copies the bundle "$3" to "$2", one opens the bundle "$2" as a
  /// program of its own.
  virtual std::string copyLine() const = 0;
  virtual std::string openLine() const = 0;
};

}  // namespace orvalle::platform
