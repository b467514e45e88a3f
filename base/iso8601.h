#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace orvalle::base {

/// The moment as ISO 8601 in UTC, such as 2025-03-14T09:05:00Z. For the years 0 to 9999.
std::string writeIso8601(std::chrono::sys_seconds moment);

/// Reads exactly that form: a date and a time that exist, no fraction, no other zone. Absent for anything
/// else.
std::optional<std::chrono::sys_seconds> readIso8601(std::string_view text);

}  // namespace orvalle::base
