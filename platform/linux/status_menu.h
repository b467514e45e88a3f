#pragma once

#include <libdbusmenu-glib/dbusmenu-glib.h>

#include <functional>
#include <memory>

#include "platform/linux/glib_ptr.h"
#include "platform/menu.h"

namespace orvalle::platform::linuxos {

/// A menu on the session bus, in the protocol of com.canonical.dbusmenu. It follows its model by looking at
/// it and tells only what differs from the last look: a row that stays the same row keeps its number and its
/// place, so that a menu which is open on somebody's screen neither closes nor flickers.
class StatusMenu {
 public:
  /// `chain` carries out the actions of items without a target. `lookWanted` is called when a look is due
  /// though the model did not change.
  StatusMenu(std::shared_ptr<Menu> menu, ActionTarget& chain, std::function<void()> lookWanted);
  StatusMenu(const StatusMenu&) = delete;
  StatusMenu& operator=(const StatusMenu&) = delete;
  ~StatusMenu();

  const std::shared_ptr<Menu>& model() const { return menu_; }
  /// Compares the model with what was told.
  void look();
  /// Puts the menu on the session bus, at `path`. There must be a session bus.
  void publish(const char* path);

 private:
  class Level;

  std::shared_ptr<Menu> menu_;
  std::function<void()> lookWanted_;
  GObjectPtr<DbusmenuMenuitem> item_;
  std::unique_ptr<Level> root_;
  GObjectPtr<DbusmenuServer> server_;
  SignalConnection aboutToShow_;
};

}  // namespace orvalle::platform::linuxos
