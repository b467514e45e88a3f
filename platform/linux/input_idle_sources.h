#pragma once

#include <gdk/gdk.h>

#include <memory>

#include "platform/input_idle.h"

/// The ways in which a session on Linux tells how long it has been left alone. Main thread only.
namespace orvalle::platform::linuxos {

/// Null pointer on another display and where the server lacks the extension.
std::unique_ptr<InputIdle> makeX11InputIdle(GdkDisplay* display);

/// Told by the compositor from a few seconds on; until then, and after each input, 0. Null pointer where it
/// does not tell.
std::unique_ptr<InputIdle> makeWaylandInputIdle();

/// Asks GNOME's or KDE's own service at each call, whichever runs then; 0 where neither does.
std::unique_ptr<InputIdle> makeBusInputIdle();

}  // namespace orvalle::platform::linuxos
