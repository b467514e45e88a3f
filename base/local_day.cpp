#include "base/local_day.h"

#include <cstdio>
#include <ctime>

namespace orvalle::base {

std::string localDay(std::chrono::sys_seconds moment) {
  const auto time = static_cast<std::time_t>(moment.time_since_epoch().count());
  // The user may have travelled since the last call.
  ::tzset();
  std::tm local{};
  ::localtime_r(&time, &local);
  char text[64];
  const int length = std::snprintf(text, sizeof text, "%04d-%02d-%02d", local.tm_year + 1900,
                                   local.tm_mon + 1, local.tm_mday);
  return {text, static_cast<std::size_t>(length)};
}

}  // namespace orvalle::base
