#include "platform/archive_listing.h"

#include <algorithm>
#include <charconv>
#include <optional>

namespace orvalle::platform {
namespace {

/// Each needs a block on the disk, and a place in its folder.
constexpr std::uintmax_t kEntryBytes = 4096;
constexpr std::size_t kMostEntries = 200'000;
constexpr std::uintmax_t kMostBytes = std::uintmax_t{1} << 40;

/// What stands before a name: mode, links, owner, group, size, and the time in three words.
constexpr int kWords = 8;
constexpr int kSizeWord = 4;

struct Entry {
  std::uintmax_t bytes = 0;
  std::string_view name;
};

std::optional<std::uintmax_t> number(std::string_view text) {
  std::uintmax_t value = 0;
  const auto* end = text.data() + text.size();
  const auto read = std::from_chars(text.data(), end, value);
  if (read.ec != std::errc() || read.ptr != end) return {};
  return value;
}

std::optional<Entry> readEntry(std::string_view line) {
  Entry entry;
  for (int word = 0; word < kWords; ++word) {
    line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
    const auto length = line.find(' ');
    if (length == std::string_view::npos || length == 0) return {};
    if (word == kSizeWord) {
      const auto bytes = number(line.substr(0, length));
      if (!bytes || *bytes > kMostBytes) return {};
      entry.bytes = *bytes;
    }
    line.remove_prefix(length);
  }
  // One blank parts the time from the name, which may begin with others.
  line.remove_prefix(1);
  if (line.empty()) return {};
  entry.name = line;
  return entry;
}

/// Whether it stays in its folder. A link's target, which stands behind the name, is not a place that is
/// written to, but one that climbs has no business in a bundle either.
bool staysInside(std::string_view name) {
  if (name.starts_with('/')) return false;
  while (!name.empty()) {
    const auto end = std::min(name.find('/'), name.size());
    if (name.substr(0, end) == "..") return false;
    name.remove_prefix(std::min(end + 1, name.size()));
  }
  return true;
}

/// The name without the target of a link.
std::string_view ownName(std::string_view name) {
  return name.substr(0, name.find(" -> "));
}

}  // namespace

std::variant<std::uintmax_t, std::string> judgeListing(std::string_view listing) {
  std::uintmax_t total = 0;
  std::size_t entries = 0;
  while (!listing.empty()) {
    const auto end = std::min(listing.find('\n'), listing.size());
    const auto line = listing.substr(0, end);
    listing.remove_prefix(std::min(end + 1, listing.size()));
    const auto entry = readEntry(line);
    if (!entry) return "Non riesco a leggere il contenuto del pacchetto: " + std::string(line);
    if (!staysInside(ownName(entry->name)))
      return "Il pacchetto esce dalla sua cartella: " + std::string(entry->name);
    total += entry->bytes + kEntryBytes;
    if (++entries > kMostEntries || total > kMostBytes) return std::string("Il pacchetto è troppo grande.");
  }
  return total;
}

}  // namespace orvalle::platform
