#include "web/script_expressions.h"

#include <boost/json/array.hpp>

#include <string_view>

#include "base/json.h"
#include "base/text.h"

namespace orvalle::web {
namespace {

constexpr std::string_view kLineSeparator = "\xE2\x80\xA8";
constexpr std::string_view kParagraphSeparator = "\xE2\x80\xA9";

std::string controlEscape(unsigned char byte) {
  static constexpr char kDigits[] = "0123456789abcdef";
  return {'\\', 'x', kDigits[byte >> 4], kDigits[byte & 15]};
}

/// A script string literal in single quotes.
std::string inQuotes(std::string_view text) {
  std::string literal = "'";
  if (!base::isValidUtf8(text)) text = {};
  while (!text.empty()) {
    const char c = text.front();
    std::size_t length = 1;
    if (c == '\'' || c == '"' || c == '\\') {
      literal += {'\\', c};
    } else if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) {
      literal += controlEscape(static_cast<unsigned char>(c));
    } else if (text.starts_with(kLineSeparator) || text.starts_with(kParagraphSeparator)) {
      literal += text.starts_with(kLineSeparator) ? "\\u2028" : "\\u2029";
      length = kLineSeparator.size();
    } else {
      literal += c;
    }
    text.remove_prefix(length);
  }
  return literal + "'";
}

}  // namespace

const char kFocusExpression[] = "window.dispatchEvent(new Event('focus'))";

std::string replyExpression(std::int64_t id, const std::string& text) {
  // Indexing a one-element array is the safe way to write any text as a script string.
  const auto array = base::writeJson(boost::json::array{boost::json::string_view(text.data(), text.size())});
  return "window.__orvalleRisposta && window.__orvalleRisposta(" + std::to_string(id) + ", " +
         array.value_or(R"([""])") + "[0])";
}

std::string commandExpression(const std::string& word, const std::optional<std::string>& id) {
  return "window.__orvalleComando && window.__orvalleComando(" + inQuotes(word) + ", " +
         (id ? inQuotes(*id) : "null") + ")";
}

}  // namespace orvalle::web
