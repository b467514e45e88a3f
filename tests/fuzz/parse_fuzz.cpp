// Whatever lies on the clipboard: what is found in it is what it must be.

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "link/pair_window.h"

namespace {

void require(bool condition) {
  if (!condition) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const auto found = orvalle::link::parse(text);
  if (found.url) {
    require(found.url->starts_with("http:/") || found.url->starts_with("https:/"));
    require(text.find(*found.url) != text.npos);
  }
  if (found.anonKey) {
    require(found.anonKey->starts_with("eyJ") && found.anonKey->size() >= 61);
    require(text.find(*found.anonKey) != text.npos);
  }
  if (found.channelKey) {
    require(found.channelKey->size() == 32 &&
            found.channelKey->find_first_not_of("0123456789abcdefABCDEF") == std::string_view::npos);
    require(text.find(*found.channelKey) != text.npos);
  }
  // What was found is found again, by itself.
  if (found.anonKey) require(orvalle::link::parse(*found.anonKey).anonKey == found.anonKey);
  if (found.channelKey) require(orvalle::link::parse(*found.channelKey).channelKey == found.channelKey);
  return 0;
}
