// Whatever the list of an archive says: what is let through names nothing outside of its folder.

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "platform/archive_listing.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view listing(reinterpret_cast<const char*>(data), size);
  const auto judged = orvalle::platform::judgeListing(listing);
  const auto* bytes = std::get_if<std::uintmax_t>(&judged);
  if (!bytes) return 0;
  const auto breaks = static_cast<std::size_t>(std::count(listing.begin(), listing.end(), '\n'));
  const bool open = !listing.empty() && listing.back() != '\n';
  if (*bytes < 4096 * (breaks + open)) std::abort();
  // A line ends with its name, which climbs here unless it is a link with its target behind it.
  for (std::size_t at = listing.find("/.."); at != std::string_view::npos; at = listing.find("/..", at + 1)) {
    const bool atEnd = at + 3 == listing.size() || listing[at + 3] == '\n';
    const auto begin = listing.rfind('\n', at) + 1;
    const auto line = listing.substr(begin, at - begin);
    if (atEnd && line.find(" -> ") == std::string_view::npos) std::abort();
  }
  return 0;
}
