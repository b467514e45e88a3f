#pragma once

#include <gio/gio.h>

namespace orvalle::platform::linuxos {

/// Chooses, before GTK opens its display, the one on which a panel can float above other programs: X11 where
/// it is reachable and the Wayland compositor has no layers. The user's own choice wins. Goes by way of the
/// environment, so that the web view's processes choose alike: call it before there are threads.
void chooseDisplay();

/// Keeps our choice from a program that is about to be started.
void hideDisplayChoice(GAppLaunchContext* context);

}  // namespace orvalle::platform::linuxos
