#include "platform/linux/shown_text.h"

#include <glib.h>

#include "base/text.h"

namespace orvalle::platform::linuxos {
namespace {

constexpr int kMostCharacters = 200;
constexpr char kEllipsis[] = "…";
constexpr char kReplacement[] = "\xEF\xBF\xBD";

}  // namespace

std::string shownText(std::string_view text) {
  std::string shown;
  std::size_t beforeLast = 0;
  for (int characters = 0; !text.empty();) {
    if (text.front() == '\0') {
      text.remove_prefix(1);
      continue;
    }
    if (characters == kMostCharacters) {
      shown.resize(beforeLast);
      shown += kEllipsis;
      break;
    }
    ++characters;
    beforeLast = shown.size();
    const auto codePoint = g_utf8_get_char_validated(text.data(), static_cast<gssize>(text.size()));
    const bool valid = codePoint < static_cast<gunichar>(-2);
    const auto length = valid ? static_cast<std::size_t>(g_unichar_to_utf8(codePoint, nullptr)) : 1;
    if (valid) {
      shown.append(text, 0, length);
    } else {
      shown += kReplacement;
    }
    text.remove_prefix(length);
  }
  return base::onOneLine(shown);
}

}  // namespace orvalle::platform::linuxos
