#pragma once

#include <chrono>
#include <string>

namespace orvalle::base {

/// The date on the user's calendar at this moment, such as 2025-03-14: in the time zone of now, whatever the
/// locale.
std::string localDay(std::chrono::sys_seconds moment);

}  // namespace orvalle::base
