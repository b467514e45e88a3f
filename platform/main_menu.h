#pragma once

#include <memory>

#include "platform/menu.h"

namespace orvalle::platform {

/// The application's menu bar.
class MainMenu {
 public:
  virtual ~MainMenu() = default;
  /// Shows `bar`, whose items each open a menu. `windows` and `help` are two of those menus, which a desktop
  /// may treat in its own way. Mirrors every later change of the model.
  virtual void show(std::shared_ptr<Menu> bar, std::shared_ptr<Menu> windows, std::shared_ptr<Menu> help) = 0;
};

}  // namespace orvalle::platform
