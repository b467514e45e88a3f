#pragma once

#include <string_view>

namespace orvalle::platform {

/// The system log.
class SystemLog {
 public:
  virtual ~SystemLog() = default;
  /// Writes one line; line breaks inside `line` become blanks. `line` begins with "Orvalle: ".
  virtual void write(std::string_view line) = 0;
};

}  // namespace orvalle::platform
