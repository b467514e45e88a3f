#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/subscription.h"

namespace orvalle::platform {

class Menu;
class MenuItem;

/// Actions that the platform itself carries out for the focused window or for the application.
inline constexpr std::string_view kActionTerminate = "terminate:";
inline constexpr std::string_view kActionHide = "hide:";
inline constexpr std::string_view kActionMiniaturize = "performMiniaturize:";
inline constexpr std::string_view kActionUndo = "undo:";
inline constexpr std::string_view kActionRedo = "redo:";
inline constexpr std::string_view kActionCut = "cut:";
inline constexpr std::string_view kActionCopy = "copy:";
inline constexpr std::string_view kActionPaste = "paste:";
inline constexpr std::string_view kActionSelectAll = "selectAll:";

/// Somebody who carries out the actions of menu items.
class ActionTarget {
 public:
  virtual ~ActionTarget() = default;
  /// Whether `perform` knows this action now.
  virtual bool responds(std::string_view action) const = 0;
  /// Carries out the action; called only for actions it responds to. `sender` stays alive during the call.
  virtual void perform(std::string_view action, MenuItem& sender) = 0;
};

/// One row of a menu: plain data that adapters mirror on the screen. Every change that makes a difference is
/// told to the listeners of the menu it is in. An item is in at most one menu.
class MenuItem {
 public:
  /// `keyEquivalent` is one character, pressed together with Command (Control on Linux); an upper-case letter
  /// also wants Shift; empty for none. An empty `action` makes a label.
  MenuItem(std::string title, std::string action, std::string keyEquivalent = {});
  static std::shared_ptr<MenuItem> separator();
  /// An item that opens `submenu`.
  static std::shared_ptr<MenuItem> opening(std::string title, std::shared_ptr<Menu> submenu);
  MenuItem(const MenuItem&) = delete;
  MenuItem& operator=(const MenuItem&) = delete;
  ~MenuItem();

  const std::string& title() const { return title_; }
  const std::string& action() const { return action_; }
  const std::string& keyEquivalent() const { return keyEquivalent_; }
  /// Who carries out the action; null pointer: whoever responds first along the responder chain. Not owned.
  ActionTarget* target() const { return target_; }
  bool checked() const { return checked_; }
  /// Whether a mark was ever set on the item, on or off: adapters keep a place for it.
  bool checkable() const { return checkable_; }
  bool enabled() const { return enabled_; }
  bool hidden() const { return hidden_; }
  bool isSeparator() const { return separator_; }
  /// What the item stands for, for its action to read.
  const std::optional<std::string>& representedObject() const { return representedObject_; }
  const std::shared_ptr<Menu>& submenu() const { return submenu_; }

  void setTitle(std::string title);
  void setTarget(ActionTarget* target);
  void setChecked(bool checked);
  void setEnabled(bool enabled);
  void setHidden(bool hidden);
  void setRepresentedObject(std::optional<std::string> object);

  /// Whether the user can choose the item: it is enabled and opens a menu, or its target (or, without one,
  /// `chain`) responds to its action.
  bool usable(const ActionTarget& chain) const;
  /// Carries out the item's action as if the user had chosen it; nothing when it is not usable.
  void choose(ActionTarget& chain);

 private:
  friend class Menu;
  void changed();
  ActionTarget& receiver(ActionTarget& chain) const { return target_ ? *target_ : chain; }

  std::string title_;
  std::string action_;
  std::string keyEquivalent_;
  ActionTarget* target_ = nullptr;
  bool checked_ = false;
  bool checkable_ = false;
  bool enabled_ = true;
  bool hidden_ = false;
  bool separator_ = false;
  std::optional<std::string> representedObject_;
  std::shared_ptr<Menu> submenu_;
  Menu* menu_ = nullptr;
};

/// An ordered list of items. Items are shared: whoever made one may keep it and change it.
class Menu {
 public:
  explicit Menu(std::string title = {}) : title_(std::move(title)) {}
  Menu(const Menu&) = delete;
  Menu& operator=(const Menu&) = delete;
  ~Menu();

  const std::string& title() const { return title_; }
  const std::vector<std::shared_ptr<MenuItem>>& items() const { return items_; }

  void add(std::shared_ptr<MenuItem> item) { replace(items_.size(), 0, {std::move(item)}); }
  /// Takes out `count` items from position `index` on and puts `items` in their place, as one change. The
  /// range lies within the menu; none of `items` is in a menu yet.
  void replace(std::size_t index, std::size_t count, std::vector<std::shared_ptr<MenuItem>> items);
  /// The item's position; absent when it is not in this menu.
  std::optional<std::size_t> indexOf(const MenuItem& item) const;

  /// Calls `listener` after every change of this menu, its items or the menus under it, once per change, from
  /// inside the changing call; it must not change the menu itself. Adapters collect calls and look once,
  /// later.
  base::Subscription onChange(std::function<void()> listener);

 private:
  friend class MenuItem;
  struct Listeners;
  void changed();

  std::string title_;
  std::vector<std::shared_ptr<MenuItem>> items_;
  MenuItem* opener_ = nullptr;
  std::shared_ptr<Listeners> listeners_;
};

/// The first usable item, in reading order through all submenus, with this key equivalent; null pointer when
/// none.
std::shared_ptr<MenuItem> itemForKey(const Menu& menu, std::string_view keyEquivalent,
                                     const ActionTarget& chain);

}  // namespace orvalle::platform
