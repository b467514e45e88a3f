#pragma once

#include "platform/environment.h"

namespace orvalle::platform::linuxos {

/// The desktops that have settings of their own for what we do. Those that build on GNOME's settings count as
/// GNOME, and so does whatever does not say what it is.
enum class DesktopKind { Gnome, Kde, Xfce };

DesktopKind desktopKind(const Environment& environment);

}  // namespace orvalle::platform::linuxos
