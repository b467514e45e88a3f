#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace orvalle::platform::linuxos {

/// One thing in a bundle, as its signature knows it.
struct ManifestEntry {
  enum class Kind { Folder, File, Link };
  Kind kind = Kind::File;
  /// The permission bits of a folder or a file.
  unsigned mode = 0;
  /// The SHA-256 of a file, in hexadecimal digits.
  std::string sha256;
  /// Where a link leads.
  std::string target;
  bool operator==(const ManifestEntry&) const = default;
};

/// Everything in a bundle by its path from the bundle's root, in the order of the bytes.
using Manifest = std::map<std::string, ManifestEntry>;

/// The manifest as text: JSON, one entry a line. Absent when a path or a target is not UTF-8.
std::optional<std::string> writeManifest(const Manifest& manifest);

/// Reads what `writeManifest` writes, all or nothing.
std::optional<Manifest> readManifest(std::string_view text);

}  // namespace orvalle::platform::linuxos
