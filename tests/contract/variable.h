#pragma once

#include <cstdlib>
#include <optional>
#include <string>

namespace orvalle::contract {

/// Sets a variable of the process, or takes it away, for as long as this lives.
class Variable {
 public:
  Variable(const char* name, const std::optional<std::string>& text) : name_(name) {
    if (const char* before = std::getenv(name)) before_ = before;
    set(text);
  }
  Variable(const Variable&) = delete;
  Variable& operator=(const Variable&) = delete;
  ~Variable() { set(before_); }

 private:
  void set(const std::optional<std::string>& text) {
    if (text) {
      ::setenv(name_, text->c_str(), 1);
    } else {
      ::unsetenv(name_);
    }
  }

  const char* name_;
  std::optional<std::string> before_;
};

}  // namespace orvalle::contract
