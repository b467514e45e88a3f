#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace orvalle::update {

/// A release, as the server's manifest announces it. The names are those of its keys.
struct Rilascio {
  /// What people read.
  std::string versione;
  /// Grows with every release, and is all that is compared.
  std::int64_t build = 0;
  /// Of the package; may be relative to the web application's address.
  std::string url;
  std::optional<std::string> note;
  /// When it was published, in words of any kind.
  std::optional<std::string> pubblicato;
  bool operator==(const Rilascio&) const = default;
};

/// Reads a manifest, all or nothing: absent for bad JSON, when "versione", "build" or "url" is missing, and
/// when anything has the wrong type. Null stands for absent where a member may be; others are ignored.
std::optional<Rilascio> decodeRilascio(std::string_view manifest);

}  // namespace orvalle::update
