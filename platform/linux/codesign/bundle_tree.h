#pragma once

#include <filesystem>
#include <string>
#include <variant>

#include "platform/linux/codesign/manifest.h"

namespace orvalle::platform::linuxos {

/// The folder in a bundle that holds its signature, and is itself not signed.
inline constexpr const char* kSignatureFolder = "Signature";

/// What cannot be in a signed bundle, or be read there: one line that begins with its path.
struct Complaint {
  std::string text;
};

/// Reads everything that lies in the bundle now, without its signature. A complaint about anything that is no
/// folder, file or link, about a file with special rights, about a link that leaves the bundle, and about a
/// root that others than its owner may write in.
std::variant<Manifest, Complaint> readTree(const std::filesystem::path& bundle);

}  // namespace orvalle::platform::linuxos
