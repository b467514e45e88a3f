#include "base/text.h"

#include <utf8proc.h>

#include <algorithm>
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

/// The code point at the end of a text that is not empty; length 0 when there is none.
CodePoint lastCodePoint(std::string_view text) {
  constexpr std::size_t kLongest = 4;
  std::size_t length = 1;
  while (length < kLongest && length < text.size() && (text[text.size() - length] & 0xC0) == 0x80) ++length;
  const auto last = firstCodePoint(text.substr(text.size() - length));
  return last.length == length ? last : CodePoint();
}

bool isWhiteSpace(utf8proc_int32_t codePoint) {
  if ((codePoint >= 0x09 && codePoint <= 0x0D) || codePoint == 0x85) return true;
  const auto category = utf8proc_category(codePoint);
  return category == UTF8PROC_CATEGORY_ZS || category == UTF8PROC_CATEGORY_ZL ||
         category == UTF8PROC_CATEGORY_ZP;
}

}  // namespace

bool isValidUtf8(std::string_view text) {
  for (;;) {
    // Most of most texts.
    const auto* ascii = std::find_if(text.begin(), text.end(), [](char c) { return (c & 0x80) != 0; });
    text.remove_prefix(static_cast<std::size_t>(ascii - text.begin()));
    if (text.empty()) return true;
    const auto first = firstCodePoint(text);
    if (first.length == 0) return false;
    text.remove_prefix(first.length);
  }
}

std::size_t codePointLength(std::string_view text) {
  return firstCodePoint(text).length;
}

std::string wellFormed(std::string_view text) {
  std::string whole;
  whole.reserve(text.size());
  while (!text.empty()) {
    const auto length = firstCodePoint(text).length;
    whole += length ? text.substr(0, length) : "\xEF\xBF\xBD";
    text.remove_prefix(length ? length : 1);
  }
  return whole;
}

std::string_view firstCharacter(std::string_view text) {
  if (text.empty()) return text;
  // Between two ASCII characters there is always a boundary, but for CR LF: no need to ask the tables.
  const auto isAscii = [](char byte) { return static_cast<unsigned char>(byte) < 0x80; };
  if (isAscii(text[0]) && (text.size() == 1 || (isAscii(text[1]) && text[0] != '\r')))
    return text.substr(0, 1);

  auto previous = firstCodePoint(text);
  if (!previous.length) return text.substr(0, 1);
  std::size_t length = previous.length;
  utf8proc_int32_t state = 0;
  while (length < text.size()) {
    const auto next = firstCodePoint(text.substr(length));
    if (!next.length || utf8proc_grapheme_break_stateful(previous.value, next.value, &state)) break;
    length += next.length;
    previous = next;
  }
  return text.substr(0, length);
}

std::string_view trimmed(std::string_view text) {
  while (!text.empty()) {
    const auto first = firstCodePoint(text);
    if (!first.length || !isWhiteSpace(first.value)) break;
    text.remove_prefix(first.length);
  }
  while (!text.empty()) {
    const auto last = lastCodePoint(text);
    if (!last.length || !isWhiteSpace(last.value)) break;
    text.remove_suffix(last.length);
  }
  return text;
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
