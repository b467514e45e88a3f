#include <CoreFoundation/CoreFoundation.h>
#include <glib.h>

#include "tests/contract/loop.h"

namespace orvalle::contract {
namespace {

constexpr CFTimeInterval kPatience = 0.005;

/// Our own parts live on the system's loop, the servers that they are tried against on GLib's.
bool turn(CFTimeInterval patience) {
  const bool served = g_main_context_iteration(nullptr, FALSE);
  return CFRunLoopRunInMode(kCFRunLoopDefaultMode, patience, true) == kCFRunLoopRunHandledSource || served;
}

}  // namespace

void turnLoop() {
  turn(kPatience);
}

void turnLoopUntilIdle() {
  while (turn(0)) {
  }
}

}  // namespace orvalle::contract
