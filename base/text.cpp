#include "base/text.h"

#include <utf8proc.h>

#include <array>

namespace orvalle::base {
namespace {

const utf8proc_uint8_t* bytes(std::string_view text) {
  return reinterpret_cast<const utf8proc_uint8_t*>(text.data());
}

/// The code point at the beginning of a text that is not empty; length 0 when there is none.
struct CodePoint {
  utf8proc_int32_t value = -1;
  std::size_t length = 0;
};

CodePoint firstCodePoint(std::string_view text) {
  CodePoint first;
  const auto length = utf8proc_iterate(bytes(text), static_cast<utf8proc_ssize_t>(text.size()), &first.value);
  if (length > 0) first.length = static_cast<std::size_t>(length);
  return first;
}

bool isWhiteSpace(utf8proc_int32_t codePoint) {
  if ((codePoint >= 0x09 && codePoint <= 0x0D) || codePoint == 0x85) return true;
  const auto category = utf8proc_category(codePoint);
  return category == UTF8PROC_CATEGORY_ZS || category == UTF8PROC_CATEGORY_ZL ||
         category == UTF8PROC_CATEGORY_ZP;
}

}  // namespace

bool isValidUtf8(std::string_view text) {
  while (!text.empty()) {
    const auto first = firstCodePoint(text);
    if (first.length == 0) return false;
    text.remove_prefix(first.length);
  }
  return true;
}

std::vector<std::string_view> characters(std::string_view text) {
  std::vector<std::string_view> found;
  utf8proc_int32_t state = 0;
  CodePoint previous;
  while (!text.empty()) {
    const auto next = firstCodePoint(text);
    const auto length = next.length ? next.length : 1;
    const bool joins = previous.length && next.length &&
                       !utf8proc_grapheme_break_stateful(previous.value, next.value, &state);
    if (joins) {
      found.back() = {found.back().data(), found.back().size() + length};
    } else {
      found.push_back(text.substr(0, length));
      if (!next.length) state = 0;
    }
    previous = next;
    text.remove_prefix(length);
  }
  return found;
}

std::string_view trimmed(std::string_view text) {
  std::size_t end = 0;
  bool leading = true;
  for (auto rest = text; !rest.empty();) {
    const auto first = firstCodePoint(rest);
    const auto length = first.length ? first.length : 1;
    const bool space = first.length && isWhiteSpace(first.value);
    if (space && leading) {
      text.remove_prefix(length);
    } else {
      leading = false;
      end = space ? end : text.size() - rest.size() + length;
    }
    rest.remove_prefix(length);
  }
  return text.substr(0, end);
}

std::string onOneLine(std::string_view text) {
  using namespace std::string_view_literals;
  // CR LF first, so that it counts once.
  static constexpr std::array kBreaks = {"\r\n"sv, "\n"sv,       "\r"sv,           "\v"sv,
                                         "\f"sv,   "\xC2\x85"sv, "\xE2\x80\xA8"sv, "\xE2\x80\xA9"sv};
  std::string line;
  line.reserve(text.size());
  while (!text.empty()) {
    std::size_t length = 0;
    for (const auto lineBreak : kBreaks) {
      if (text.starts_with(lineBreak)) {
        length = lineBreak.size();
        break;
      }
    }
    line += length ? ' ' : text.front();
    text.remove_prefix(length ? length : 1);
  }
  return line;
}

}  // namespace orvalle::base
