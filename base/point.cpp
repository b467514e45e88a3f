#include "base/point.h"

#include <charconv>

#include "base/decimal.h"

namespace orvalle::base {
namespace {

std::string numberText(double value) {
  char buffer[32];
  // Adding zero turns a negative zero into the plain one.
  const auto result = std::to_chars(buffer, buffer + sizeof buffer, value + 0.0);
  return {buffer, result.ptr};
}

std::string_view trimBlanks(std::string_view text) {
  while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  return text;
}

}  // namespace

std::string pointText(Point point) {
  return "{" + numberText(point.x) + ", " + numberText(point.y) + "}";
}

Point pointFromText(std::string_view text) {
  text = trimBlanks(text);
  if (text.size() < 2 || text.front() != '{' || text.back() != '}') return {};
  text = text.substr(1, text.size() - 2);
  const auto comma = text.find(',');
  if (comma == std::string_view::npos) return {};
  const auto x = decimalNumber(trimBlanks(text.substr(0, comma)));
  const auto y = decimalNumber(trimBlanks(text.substr(comma + 1)));
  if (!x || !y) return {};
  return {*x, *y};
}

}  // namespace orvalle::base
