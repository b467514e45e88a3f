#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace orvalle::platform {

/// The process environment.
class Environment {
 public:
  virtual ~Environment() = default;
  /// The variable's text, possibly empty; absent when it is not set.
  virtual std::optional<std::string> variable(std::string_view name) const = 0;
};

}  // namespace orvalle::platform
