#include "platform/shown_text.h"

#include "base/text.h"

namespace orvalle::platform {
namespace {

constexpr int kMostCharacters = 200;

constexpr int kLongestText = 5'000;
constexpr int kLongestWord = 200;
constexpr int kMostLines = 500;

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
    const auto length = base::codePointLength(text);
    shown += length ? text.substr(0, length) : kReplacement;
    text.remove_prefix(length ? length : 1);
  }
  return base::onOneLine(shown);
}

std::string readableText(std::string_view text) {
  std::string shown;
  int wordLength = 0;
  int lines = 1;
  for (int characters = 0; characters < kLongestText && !text.empty(); ++characters) {
    if (text.front() == '\n' && ++lines > kMostLines) break;
    const auto length = base::codePointLength(text);
    const auto character = text.substr(0, length ? length : 1);
    wordLength = base::trimmed(character).empty() ? 0 : wordLength + 1;
    if (wordLength <= kLongestWord) {
      shown += length && character.front() != '\0' ? character : kReplacement;
    } else if (wordLength == kLongestWord + 1) {
      shown += kEllipsis;
    }
    text.remove_prefix(character.size());
  }
  if (!text.empty() && !shown.ends_with(kEllipsis)) shown += kEllipsis;
  return shown;
}

}  // namespace orvalle::platform
