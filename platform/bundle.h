#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace orvalle::platform {

/// The folder that holds the program with everything that belongs to it, and what it says of itself.
class Bundle {
 public:
  virtual ~Bundle() = default;
  /// "CFBundleIdentifier"; absent outside a bundle. This and the others are absent too when they are missing
  /// or no text.
  virtual std::optional<std::string> identifier() const = 0;
  /// "CFBundleVersion", the build.
  virtual std::optional<std::string> version() const = 0;
  /// "CFBundleShortVersionString", the version that people read.
  virtual std::optional<std::string> shortVersion() const = 0;
  /// The bundle's folder; outside a bundle the folder of the program's file.
  virtual std::filesystem::path path() const = 0;

  /// The version as it is shown to people.
  std::string versioneLeggibile() const { return shortVersion().value_or("?"); }
};

}  // namespace orvalle::platform
