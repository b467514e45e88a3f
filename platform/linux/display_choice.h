#pragma once

#include <gio/gio.h>

#include <filesystem>

namespace orvalle::platform::linuxos {

/// Chooses, before GTK opens its display, the one on which a panel can float above other programs: X11 where
/// it is reachable and the Wayland compositor has no layers. The user's own choice wins. Goes by way of the
/// environment, so that the web view's processes choose alike: call it before there are threads.
void chooseDisplay();

/// Keeps the web view from handing its picture over in the graphics card's memory where the driver is known
/// to leave the window blank then: NVIDIA's own. `modules` has a folder for each module of the kernel. The
/// user's own choice wins. By way of the environment too: call it before there are threads.
void chooseGraphics(const std::filesystem::path& modules = "/sys/module");

/// Keeps our choices from a program that is about to be started.
void hideChoices(GAppLaunchContext* context);

}  // namespace orvalle::platform::linuxos
