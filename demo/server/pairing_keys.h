#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace orvalle::demo {

/// What a client needs, beside the address, to share a session over this server.
struct PairingKeys {
  /// Opens the realtime endpoint: a text in the form of a JSON Web Token.
  std::string anonKey;
  /// Names the user's channel: 32 hexadecimal digits.
  std::string channelKey;
  bool operator==(const PairingKeys&) const = default;
};

/// New random keys.
PairingKeys makeKeys();

/// The keys of this installation: those in the file, or new ones, which are then kept there, readable by the
/// user only. Absent when they cannot be kept.
std::optional<PairingKeys> keptKeys(const std::filesystem::path& file);

}  // namespace orvalle::demo
