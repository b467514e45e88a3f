#pragma once

#include <optional>
#include <string>

#include "platform/defaults.h"

namespace orvalle::link {

/// The three values that pair this desktop with the user's live session, kept in the user's settings exactly
/// as given. Nothing is cached: each read asks the settings, each write goes there.
class Config {
 public:
  explicit Config(platform::Defaults& defaults) : defaults_(defaults) {}

  /// The project's address; empty when nothing is stored. The other two likewise.
  std::string url() const { return stored("supabaseUrl"); }
  /// The project's public key.
  std::string anonKey() const { return stored("anonKey"); }
  /// The user's channel key.
  std::string channelKey() const { return stored("channelKey"); }
  void setUrl(const std::string& value) { defaults_.set("supabaseUrl", value); }
  void setAnonKey(const std::string& value) { defaults_.set("anonKey", value); }
  void setChannelKey(const std::string& value) { defaults_.set("channelKey", value); }

  /// Whether all three are there. A value of blanks alone counts.
  bool isReady() const { return !url().empty() && !anonKey().empty() && !channelKey().empty(); }

  /// The websocket address made from the project's address and the public key; absent when the stored address
  /// does not parse. Not a usable address unless `isReady`.
  std::optional<std::string> socketURL() const;

 private:
  std::string stored(const char* key) const { return defaults_.text(key).value_or(""); }

  platform::Defaults& defaults_;
};

}  // namespace orvalle::link
