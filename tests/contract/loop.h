#pragma once

#include <glib.h>

#include <chrono>

namespace orvalle::contract {

/// Turns the main loop until `done` says so; false when that takes longer than a test can wait.
template <typename Done>
bool runUntil(Done done, std::chrono::milliseconds limit = std::chrono::seconds(10)) {
  const gint64 end = g_get_monotonic_time() + limit.count() * 1000;
  // Wakes the loop even where nothing happens.
  const guint tick = g_timeout_add(
      5, [](gpointer) -> gboolean { return G_SOURCE_CONTINUE; }, nullptr);
  bool reached = done();
  while (!reached && g_get_monotonic_time() < end) {
    g_main_context_iteration(nullptr, TRUE);
    reached = done();
  }
  g_source_remove(tick);
  return reached;
}

/// Turns the main loop for a while, for what must not happen.
inline void runFor(std::chrono::milliseconds duration) {
  runUntil([] { return false; }, duration);
}

}  // namespace orvalle::contract
