#pragma once

#include <cmath>
#include <map>
#include <string>

#include "base/text.h"
#include "platform/defaults.h"
#include "platform/environment.h"

namespace orvalle::platform::memory {

/// Settings that live as long as the object: kept from one program run to the next by a test that needs it.
class MemoryDefaults : public Defaults {
 public:
  std::optional<Value> value(std::string_view key) const override {
    const auto found = values_.find(key);
    return found == values_.end() ? std::nullopt : std::optional(found->second);
  }
  void set(std::string_view key, const Value& value) override {
    const auto* text = std::get_if<std::string>(&value);
    const auto* number = std::get_if<double>(&value);
    if ((text && !base::isValidUtf8(*text)) || (number && !std::isfinite(*number))) return;
    values_.insert_or_assign(std::string(key), value);
    ++writes;
  }

  /// How many values were stored so far.
  int writes = 0;

 private:
  std::map<std::string, Value, std::less<>> values_;
};

class MemoryEnvironment : public Environment {
 public:
  std::optional<std::string> variable(std::string_view name) const override {
    const auto found = variables.find(name);
    return found == variables.end() ? std::nullopt : std::optional(found->second);
  }

  std::map<std::string, std::string, std::less<>> variables;
};

}  // namespace orvalle::platform::memory
