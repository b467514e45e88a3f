#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace orvalle::platform::linuxos {

/// An Ed25519 key to sign with.
class SigningKey {
 public:
  /// A new one.
  static SigningKey make();
  /// The one that belongs to this text: everybody can make it.
  static SigningKey derivedFrom(std::string_view text);
  /// The one that `text` holds in its first line: 64 hexadecimal digits, its seed.
  static std::optional<SigningKey> read(std::string_view text);

  /// The line that `read` takes.
  std::string seedText() const;
  /// In 64 hexadecimal digits.
  std::string publicKey() const;
  /// In 128 hexadecimal digits.
  std::string sign(std::string_view text) const;

 private:
  explicit SigningKey(std::string secret) : secret_(std::move(secret)) {}
  static SigningKey fromSeed(std::string_view seed);

  /// As the library keeps it: the seed and the public key.
  std::string secret_;
};

/// Whether `signature` is that of the key's owner on `text`; both in hexadecimal digits.
bool isSigned(std::string_view text, std::string_view signature, std::string_view publicKey);

}  // namespace orvalle::platform::linuxos
