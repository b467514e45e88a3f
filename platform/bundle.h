#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace orvalle::platform {

/// Why a bundle cannot be replaced.
enum class SwapObstacle {
  /// The program does not run from a bundle.
  NoBundle,
  /// The bundle came with a package of the system, whose package manager keeps it up to date.
  Packaged,
  /// The user may not write where the bundle lies.
  FolderNotWritable,
  /// The user may not remove the bundle, or something in it.
  NotRemovable,
};

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
  /// "PackageManager": who keeps the bundle up to date, where that is a package manager; absent otherwise.
  virtual std::optional<std::string> packageManager() const = 0;
  /// The bundle's folder; outside a bundle the folder of the program's file.
  virtual std::filesystem::path path() const = 0;

  /// What keeps another bundle from taking this one's place now; absent when nothing does.
  virtual std::optional<SwapObstacle> swapObstacle() const = 0;
  /// The "CFBundleIdentifier" of the bundle at `path`; absent also when there is no bundle, but something
  /// else.
  virtual std::optional<std::string> identifierOf(const std::filesystem::path& path) const = 0;

  /// The version as it is shown to people.
  std::string versioneLeggibile() const { return shortVersion().value_or("?"); }
};

}  // namespace orvalle::platform
