#include <glib.h>

#include "tests/contract/loop.h"

namespace orvalle::contract {
namespace {

constexpr guint kPatience = 5;

}  // namespace

void turnLoop() {
  // Wakes the loop even where nothing happens.
  bool woken = false;
  const guint tick = g_timeout_add(
      kPatience,
      [](gpointer data) -> gboolean {
        *static_cast<bool*>(data) = true;
        return G_SOURCE_REMOVE;
      },
      &woken);
  g_main_context_iteration(nullptr, TRUE);
  if (!woken) g_source_remove(tick);
}

void turnLoopUntilIdle() {
  while (g_main_context_iteration(nullptr, FALSE)) {
  }
}

}  // namespace orvalle::contract
