#pragma once

#include <gtk/gtk.h>

#include <memory>

#include "platform/menu.h"

namespace orvalle::platform::linuxos {

/// The menu bar as the application gives it to desktops that show it outside the windows.
class MenuExport {
 public:
  virtual ~MenuExport() = default;
  /// Brings what is exported in step with the bar, touching the menus that have changed.
  virtual void update(const Menu& bar) = 0;
};

/// `chain` is for items without a target.
std::unique_ptr<MenuExport> makeMenuExport(GtkApplication* application, ActionTarget& chain);

}  // namespace orvalle::platform::linuxos
