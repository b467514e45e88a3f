#pragma once

#include <gdk/gdk.h>

#include <string>

#include "platform/menu.h"

namespace orvalle::platform::linuxos {

/// What the item's row is called on the screen, whatever its title holds: the menu without one is the
/// application's.
std::string shownTitle(const MenuItem& item);

/// A key equivalent as GTK writes it, with Control in Command's place.
struct Accelerator {
  guint key = 0;
  GdkModifierType modifiers = GDK_CONTROL_MASK;
};

/// The item must have a key equivalent.
Accelerator accelerator(const MenuItem& item);

}  // namespace orvalle::platform::linuxos
