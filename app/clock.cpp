#include "app/clock.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>

namespace orvalle::app {
namespace {

std::string twoDigits(std::int64_t value) {
  return (value < 10 ? "0" : "") + std::to_string(value);
}

}  // namespace

std::string clock(double minutes) {
  const double rounded = std::round(minutes * 60);
  if (!(rounded >= -0x1p63 && rounded < 0x1p63)) std::abort();
  const auto seconds = std::max<std::int64_t>(static_cast<std::int64_t>(rounded), 0);
  const auto wholeMinutes = seconds % 3600 / 60;
  const auto rest = twoDigits(seconds % 60);
  if (seconds < 3600) return std::to_string(wholeMinutes) + ":" + rest;
  return std::to_string(seconds / 3600) + ":" + twoDigits(wholeMinutes) + ":" + rest;
}

}  // namespace orvalle::app
