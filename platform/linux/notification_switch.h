#pragma once

#include <gio/gio.h>

#include <functional>

#include "platform/environment.h"

namespace orvalle::platform::linuxos {

/// Finds out whether the user has switched our notifications off in the desktop's settings. `done` is called
/// once, on the main loop, possibly inside this call.
void askNotificationSwitch(GDBusConnection* bus, const Environment& environment,
                           std::function<void(bool off)> done);

}  // namespace orvalle::platform::linuxos
