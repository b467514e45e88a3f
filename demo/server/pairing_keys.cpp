#include "demo/server/pairing_keys.h"

#include <glib.h>
#include <sys/random.h>
#include <boost/json/object.hpp>

#include <algorithm>
#include <array>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "base/atomic_file.h"
#include "base/json.h"

namespace orvalle::demo {
namespace {

namespace fs = std::filesystem;

template <std::size_t size>
std::array<unsigned char, size> randomBytes() {
  std::array<unsigned char, size> bytes;
  if (getrandom(bytes.data(), size, 0) != static_cast<ssize_t>(size)) throw std::runtime_error("getrandom");
  return bytes;
}

/// Base64 with the alphabet for addresses, without padding.
std::string encoded(const unsigned char* bytes, std::size_t size) {
  g_autofree char* text = g_base64_encode(bytes, size);
  std::string result(text);
  std::replace(result.begin(), result.end(), '+', '-');
  std::replace(result.begin(), result.end(), '/', '_');
  result.erase(std::find(result.begin(), result.end(), '='), result.end());
  return result;
}

std::string encoded(std::string_view text) {
  return encoded(reinterpret_cast<const unsigned char*>(text.data()), text.size());
}

std::string makeAnonKey() {
  // The key is compared as a whole, so that the place of the signature can be taken by what makes it secret.
  const auto secret = randomBytes<32>();
  return encoded(R"({"alg":"HS256","typ":"JWT"})") + "." +
         encoded(R"({"iss":"orvalle-demo","role":"anon"})") + "." + encoded(secret.data(), secret.size());
}

std::string makeChannelKey() {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string key;
  for (const unsigned char byte : randomBytes<16>()) {
    key += kDigits[byte / 16U];
    key += kDigits[byte % 16U];
  }
  return key;
}

std::optional<PairingKeys> read(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  const auto json = base::parseJson(std::string(std::istreambuf_iterator<char>(stream), {}));
  if (!json) return std::nullopt;
  auto anonKey = base::jsonText(base::jsonMember(*json, "anonKey"));
  auto channelKey = base::jsonText(base::jsonMember(*json, "channelKey"));
  if (!anonKey || anonKey->empty() || !channelKey || channelKey->empty()) return std::nullopt;
  return PairingKeys{std::move(*anonKey), std::move(*channelKey)};
}

bool keep(const PairingKeys& keys, const fs::path& file) {
  std::error_code error;
  fs::create_directories(file.parent_path(), error);
  const auto text =
      base::writeJson(boost::json::object{{"anonKey", keys.anonKey}, {"channelKey", keys.channelKey}});
  return text && !base::replaceFile(file, *text + "\n", fs::perms::owner_read | fs::perms::owner_write);
}

}  // namespace

PairingKeys makeKeys() {
  return {makeAnonKey(), makeChannelKey()};
}

std::optional<PairingKeys> keptKeys(const fs::path& file) {
  if (auto keys = read(file)) return keys;
  PairingKeys keys = makeKeys();
  if (!keep(keys, file)) return std::nullopt;
  return keys;
}

}  // namespace orvalle::demo
