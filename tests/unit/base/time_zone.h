#pragma once

#include <cstdlib>
#include <ctime>
#include <optional>
#include <string>

namespace orvalle::base {

/// The user is in this time zone as long as this lives.
class TimeZone {
 public:
  explicit TimeZone(const char* name) {
    if (const char* before = std::getenv("TZ")) before_ = before;
    ::setenv("TZ", name, 1);
  }
  TimeZone(const TimeZone&) = delete;
  TimeZone& operator=(const TimeZone&) = delete;
  ~TimeZone() {
    if (before_) {
      ::setenv("TZ", before_->c_str(), 1);
    } else {
      ::unsetenv("TZ");
    }
    ::tzset();
  }

 private:
  std::optional<std::string> before_;
};

}  // namespace orvalle::base
