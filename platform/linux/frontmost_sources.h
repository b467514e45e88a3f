#pragma once

#include <gdk/gdk.h>

#include <memory>

#include "platform/frontmost.h"

/// The ways in which a session on Linux tells what is in front. Main thread only.
namespace orvalle::platform::linuxos {

/// Asks the window manager, which must keep to the hints that all common ones keep to, at each call.
std::unique_ptr<Frontmost> makeX11Frontmost(GdkDisplay* display);

/// Listens to the compositor's list of windows. Null pointer where the session has no compositor or none that
/// gives such a list.
std::unique_ptr<Frontmost> makeWaylandFrontmost();

/// Listens to what programs tell assistive technologies, where nothing else can be asked. Programs that tell
/// them nothing are not seen.
std::unique_ptr<Frontmost> makeAtspiFrontmost();

}  // namespace orvalle::platform::linuxos
