#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace orvalle::platform {

/// The user's settings: a small persistent store of typed values. Nothing is cached by its users: each read
/// asks the store, each write is on disk when the call returns (or the failure is in the log and the value is
/// kept for this run). Types never convert into one another: the integer 1 is not true.
class Defaults {
 public:
  using Value = std::variant<bool, std::int64_t, double, std::string>;

  virtual ~Defaults() = default;

  /// The value under `key`; absent when nothing is stored there.
  virtual std::optional<Value> value(std::string_view key) const = 0;
  /// Stores `value` under `key`, whatever was there. A text that is not UTF-8 and a number that is not finite
  /// are not stored.
  virtual void set(std::string_view key, const Value& value) = 0;

  /// The text under `key`; absent when nothing or something else is stored there.
  std::optional<std::string> text(std::string_view key) const { return typed<std::string>(key); }
  /// The Boolean under `key`; absent when nothing or something else is stored there.
  std::optional<bool> boolean(std::string_view key) const { return typed<bool>(key); }

 private:
  template <typename Type>
  std::optional<Type> typed(std::string_view key) const {
    const auto stored = value(key);
    if (!stored) return {};
    if (const auto* typed = std::get_if<Type>(&*stored)) return *typed;
    return {};
  }
};

}  // namespace orvalle::platform
