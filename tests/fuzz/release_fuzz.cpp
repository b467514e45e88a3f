// Whatever a server says of its newest release: it is read whole or not at all, as a general reader of JSON
// reads it.

#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "base/json.h"
#include "update/rilascio.h"

namespace {

void require(bool condition) {
  if (!condition) std::abort();
}

/// Whether the member is what was read: the same text, or absent from both.
bool agrees(const orvalle::base::Json& manifest, const char* key, const std::optional<std::string>& read) {
  const auto* member = orvalle::base::jsonMember(manifest, key);
  if (!member || member->is_null()) return !read;
  return orvalle::base::jsonText(member) == read;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const auto rilascio = orvalle::update::decodeRilascio(text);
  if (!rilascio) return 0;
  const auto manifest = orvalle::base::parseJson(text);
  require(manifest.has_value());
  require(agrees(*manifest, "versione", rilascio->versione) && agrees(*manifest, "url", rilascio->url));
  require(agrees(*manifest, "note", rilascio->note) && agrees(*manifest, "pubblicato", rilascio->pubblicato));
  require(orvalle::base::jsonInteger(orvalle::base::jsonMember(*manifest, "build")) == rilascio->build);
  return 0;
}
