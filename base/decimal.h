#pragma once

#include <optional>
#include <string_view>

namespace orvalle::base {

/// The number nearest to a decimal number such as "-12.5e3", whatever the user's locale; absent when the text
/// is anything else or the number is too great or too small to tell from infinity or zero.
std::optional<double> decimalNumber(std::string_view text);

/// The same by way of the C library, for systems whose C++ library has no such reading yet.
std::optional<double> decimalNumberOfC(std::string_view text);

}  // namespace orvalle::base
