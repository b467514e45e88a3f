#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvalle::services {

/// A moment of the diary. Finer than a second, so that lengths are exact, and reaching further than the
/// clock's own moments, so that every date that a file can name has one.
using Moment = std::chrono::sys_time<std::chrono::microseconds>;

/// One stretch of time spent in one window of one application.
struct Blocco {
  /// The application's localised display name.
  std::string app;
  /// The window's title; absent where it has none or nobody may read it.
  std::optional<std::string> titolo;
  /// When the stretch was first and last seen.
  Moment da;
  Moment a;

  /// Whole minutes from `da` to `a`, never below 0.
  std::int64_t minuti() const;
  bool operator==(const Blocco&) const = default;
};

/// The blocks as a compact JSON array, moments in whole seconds. Absent when a text in them is not UTF-8.
std::optional<std::string> encodeBlocchi(const std::vector<Blocco>& blocchi);

/// Reads such an array, all or nothing: absent when any of it is not as it should be. Unknown keys are
/// ignored.
std::optional<std::vector<Blocco>> decodeBlocchi(std::string_view json);

}  // namespace orvalle::services
