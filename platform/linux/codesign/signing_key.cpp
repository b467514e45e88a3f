#include "platform/linux/codesign/signing_key.h"

#include <sodium.h>

#include <cstdlib>
#include <utility>

namespace orvalle::platform::linuxos {
namespace {

const unsigned char* bytes(std::string_view text) {
  return reinterpret_cast<const unsigned char*>(text.data());
}

unsigned char* bytes(std::string& text) {
  return reinterpret_cast<unsigned char*>(text.data());
}

std::string hexadecimal(std::string_view data) {
  std::string text(2 * data.size() + 1, '\0');
  sodium_bin2hex(text.data(), text.size(), bytes(data), data.size());
  text.pop_back();
  return text;
}

/// Exactly `size` bytes, in hexadecimal digits and nothing else.
std::optional<std::string> binary(std::string_view text, std::size_t size) {
  std::string data(size, '\0');
  std::size_t length = 0;
  if (text.size() != 2 * size ||
      sodium_hex2bin(bytes(data), size, text.data(), text.size(), nullptr, &length, nullptr) != 0 ||
      length != size)
    return {};
  return data;
}

}  // namespace

SigningKey SigningKey::fromSeed(std::string_view seed) {
  std::string secret(crypto_sign_SECRETKEYBYTES, '\0');
  std::string publicKey(crypto_sign_PUBLICKEYBYTES, '\0');
  crypto_sign_seed_keypair(bytes(publicKey), bytes(secret), bytes(seed));
  return SigningKey(std::move(secret));
}

SigningKey SigningKey::make() {
  // Without it there is no source of random numbers to trust.
  if (sodium_init() < 0) std::abort();
  std::string seed(crypto_sign_SEEDBYTES, '\0');
  randombytes_buf(seed.data(), seed.size());
  return fromSeed(seed);
}

SigningKey SigningKey::derivedFrom(std::string_view text) {
  static_assert(crypto_hash_sha256_BYTES == crypto_sign_SEEDBYTES);
  std::string seed(crypto_sign_SEEDBYTES, '\0');
  crypto_hash_sha256(bytes(seed), bytes(text), text.size());
  return fromSeed(seed);
}

std::optional<SigningKey> SigningKey::read(std::string_view text) {
  const auto seed = binary(text.substr(0, text.find('\n')), crypto_sign_SEEDBYTES);
  if (!seed) return {};
  return fromSeed(*seed);
}

std::string SigningKey::seedText() const {
  return hexadecimal(std::string_view(secret_).substr(0, crypto_sign_SEEDBYTES)) + "\n";
}

std::string SigningKey::publicKey() const {
  return hexadecimal(std::string_view(secret_).substr(crypto_sign_SEEDBYTES));
}

std::string SigningKey::sign(std::string_view text) const {
  std::string signature(crypto_sign_BYTES, '\0');
  crypto_sign_detached(bytes(signature), nullptr, bytes(text), text.size(), bytes(secret_));
  return hexadecimal(signature);
}

bool isSigned(std::string_view text, std::string_view signature, std::string_view publicKey) {
  const auto own = binary(signature, crypto_sign_BYTES);
  const auto key = binary(publicKey, crypto_sign_PUBLICKEYBYTES);
  return own && key && crypto_sign_verify_detached(bytes(*own), bytes(text), text.size(), bytes(*key)) == 0;
}

}  // namespace orvalle::platform::linuxos
