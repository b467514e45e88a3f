#pragma once

#include <chrono>

namespace orvalle::contract {

/// Runs what is due on the main loop; where nothing is, waits a few milliseconds for it.
void turnLoop();
/// Runs what is due on the main loop, and everything that becomes due meanwhile, without waiting.
void turnLoopUntilIdle();

/// Turns the main loop until `done` says so; false when that takes longer than a test can wait.
template <typename Done>
bool runUntil(Done done, std::chrono::milliseconds limit = std::chrono::seconds(10)) {
  const auto end = std::chrono::steady_clock::now() + limit;
  bool reached = done();
  while (!reached && std::chrono::steady_clock::now() < end) {
    turnLoop();
    reached = done();
  }
  return reached;
}

/// Turns the main loop for a while, for what must not happen.
inline void runFor(std::chrono::milliseconds duration) {
  runUntil([] { return false; }, duration);
}

}  // namespace orvalle::contract
