#include "base/decimal.h"

#include <charconv>
#include <cmath>
#include <cstdlib>
#include <string>

#ifdef __APPLE__
#include <xlocale.h>
#else
#include <locale.h>
#endif

namespace orvalle::base {
namespace {

/// Whether the text is made of what decimal numbers are made of, and does not begin as only the C library
/// lets numbers begin. Leaves out "inf" and "nan", too.
bool looksDecimal(std::string_view text) {
  return !text.empty() && text.front() != '+' &&
         text.find_first_not_of("0123456789+-.eE") == std::string_view::npos;
}

bool hasDigitOtherThanZero(std::string_view text) {
  return text.substr(0, text.find_first_of("eE")).find_first_of("123456789") != std::string_view::npos;
}

}  // namespace

std::optional<double> decimalNumber(std::string_view text) {
#ifdef __cpp_lib_to_chars
  if (!looksDecimal(text)) return {};
  double value = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
  if (result.ec != std::errc() || result.ptr != text.data() + text.size()) return {};
  return value;
#else
  return decimalNumberOfC(text);
#endif
}

std::optional<double> decimalNumberOfC(std::string_view text) {
  if (!looksDecimal(text)) return {};
  static const locale_t plain = ::newlocale(LC_ALL_MASK, "C", nullptr);
  const std::string terminated(text);
  char* end = nullptr;
  const double value = ::strtod_l(terminated.c_str(), &end, plain);
  if (end != terminated.c_str() + terminated.size() || !std::isfinite(value)) return {};
  if (value == 0 && hasDigitOtherThanZero(text)) return {};
  return value;
}

}  // namespace orvalle::base
