#pragma once

#include <gtk/gtk.h>

#include <memory>

#include "platform/menu.h"

namespace orvalle::platform::linuxos {

/// A pop-up menu with a submenu for each menu of the bar that `root`'s first item opens, if any; a floating
/// reference. It follows the model as long as it lives. `chain`, for items without a target, must outlive it.
GtkWidget* makeMenuPopup(std::shared_ptr<Menu> root, ActionTarget& chain);

}  // namespace orvalle::platform::linuxos
