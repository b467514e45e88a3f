#pragma once

#include <memory>
#include <string>

#include "platform/menu.h"

namespace orvalle::app {

/// The menu bar and the two of its menus that systems treat in their own way.
struct MainMenus {
  std::shared_ptr<platform::Menu> bar;
  std::shared_ptr<platform::Menu> windows;
  std::shared_ptr<platform::Menu> help;
};

/// The title of the item that turns the overlay on and off. Where nothing can float, it says so.
std::string overlayTitle(bool canFloat);

/// Builds the menu bar. Items for the `Controller`'s actions have it as their target, those of "Modifica"
/// have none and so reach whatever has the focus. "Nascondi Orvalle", "Esci da Orvalle" and "Riduci a icona"
/// have it as target too although it does not know their actions: they stay inert.
MainMenus buildMainMenus(platform::ActionTarget& controller, bool canFloat);

}  // namespace orvalle::app
