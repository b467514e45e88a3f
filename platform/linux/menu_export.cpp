#include "platform/linux/menu_export.h"

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/linux/glib_ptr.h"
#include "platform/linux/menu_text.h"

namespace orvalle::platform::linuxos {
namespace {

/// Readers of exported menus take an underscore for the mark of a mnemonic.
std::string withoutMnemonics(const std::string& title) {
  std::string text;
  for (const char character : title) text.append(character == '_' ? 2 : 1, character);
  return text;
}

/// Whether the item shows as usable. One without a target depends on what has the keyboard, which changes all
/// the time: it shows as usable and does nothing when chosen in vain.
bool showsUsable(const MenuItem& item, const ActionTarget& chain) {
  return item.target() ? item.usable(chain) : item.enabled() && !item.action().empty();
}

/// Everything about the menu that exported rows are made of, to see whether they have changed.
std::string signature(const Menu& menu) {
  std::string text;
  for (const auto& item : menu.items()) {
    text += std::to_string(reinterpret_cast<std::uintptr_t>(item.get()));
    text += item->hidden() ? 'h' : item->isSeparator() ? 's' : item->checkable() ? 'c' : 'i';
    text += item->title() + '\0';
    if (item->submenu()) text += '(' + signature(*item->submenu()) + ')';
  }
  return text;
}

/// Removes its action from the application when it goes away.
class ExportedItem {
 public:
  ExportedItem(GActionMap* map, std::string name, std::shared_ptr<MenuItem> item, ActionTarget& chain)
      : map_(map), name_(std::move(name)), item_(std::move(item)), chain_(chain) {
    action_ = GObjectPtr<GSimpleAction>::adopt(
        item_->checkable()
            ? g_simple_action_new_stateful(name_.c_str(), nullptr, g_variant_new_boolean(FALSE))
            : g_simple_action_new(name_.c_str(), nullptr));
    activated_.emplace(action_.get(), "activate", G_CALLBACK(&ExportedItem::onActivate), this);
    update();
    g_action_map_add_action(map_, G_ACTION(action_.get()));
  }
  ExportedItem(const ExportedItem&) = delete;
  ExportedItem& operator=(const ExportedItem&) = delete;
  ~ExportedItem() { g_action_map_remove_action(map_, name_.c_str()); }

  /// Touches only what differs.
  void update() {
    g_simple_action_set_enabled(action_.get(), showsUsable(*item_, chain_));
    if (item_->checkable()) g_simple_action_set_state(action_.get(), g_variant_new_boolean(item_->checked()));
  }

 private:
  static void onActivate(GSimpleAction*, GVariant*, gpointer data) {
    auto& self = *static_cast<ExportedItem*>(data);
    // The action may do away with the row.
    const auto item = self.item_;
    item->choose(self.chain_);
  }

  GActionMap* map_;
  std::string name_;
  std::shared_ptr<MenuItem> item_;
  ActionTarget& chain_;
  GObjectPtr<GSimpleAction> action_;
  std::optional<SignalConnection> activated_;
};

/// One menu of the bar.
struct ExportedMenu {
  GObjectPtr<GMenu> rows = GObjectPtr<GMenu>::adopt(g_menu_new());
  std::vector<std::unique_ptr<ExportedItem>> items;
  std::string signature;
};

class GlibMenuExport final : public MenuExport {
 public:
  GlibMenuExport(GtkApplication* application, ActionTarget& chain)
      : application_(application), chain_(chain), bar_(GObjectPtr<GMenu>::adopt(g_menu_new())) {
    // While it is still empty: GTK would make accelerators of its own from the keys in it, which follow other
    // rules than ours.
    gtk_application_set_menubar(application, G_MENU_MODEL(bar_.get()));
  }

  void update(const Menu& bar) override {
    std::string titles;
    for (const auto& item : bar.items()) titles += item->title() + (item->hidden() ? 'h' : 'i') + '\0';
    if (titles != titles_) {
      titles_ = titles;
      fillBar(bar);
    }
    std::size_t index = 0;
    for (const auto& item : bar.items()) {
      if (item->submenu() && !item->hidden()) updateMenu(menus_[index++], *item->submenu());
    }
  }

 private:
  void fillBar(const Menu& bar) {
    g_menu_remove_all(bar_.get());
    menus_.clear();
    for (const auto& item : bar.items()) {
      if (!item->submenu() || item->hidden()) continue;
      auto& menu = menus_.emplace_back();
      g_menu_append_submenu(bar_.get(), withoutMnemonics(shownTitle(*item)).c_str(),
                            G_MENU_MODEL(menu.rows.get()));
    }
  }

  void updateMenu(ExportedMenu& exported, const Menu& menu) {
    auto current = signature(menu);
    if (current != exported.signature) {
      exported.signature = std::move(current);
      g_menu_remove_all(exported.rows.get());
      exported.items.clear();
      fill(exported.rows.get(), menu, exported.items);
    }
    for (const auto& item : exported.items) item->update();
  }

  /// Separators become the borders of sections.
  void fill(GMenu* rows, const Menu& menu, std::vector<std::unique_ptr<ExportedItem>>& items) {
    GObjectPtr<GMenu> section;
    for (const auto& item : menu.items()) {
      if (item->hidden()) continue;
      if (!section || item->isSeparator()) {
        section = GObjectPtr<GMenu>::adopt(g_menu_new());
        g_menu_append_section(rows, nullptr, G_MENU_MODEL(section.get()));
      }
      if (item->isSeparator()) continue;
      const auto row =
          GObjectPtr<GMenuItem>::adopt(g_menu_item_new(withoutMnemonics(shownTitle(*item)).c_str(), nullptr));
      if (item->submenu()) {
        const auto submenu = GObjectPtr<GMenu>::adopt(g_menu_new());
        fill(submenu.get(), *item->submenu(), items);
        g_menu_item_set_submenu(row.get(), G_MENU_MODEL(submenu.get()));
      } else {
        auto name = "menu-" + std::to_string(nextAction_++);
        g_menu_item_set_detailed_action(row.get(), ("app." + name).c_str());
        if (!item->keyEquivalent().empty()) {
          const auto [key, modifiers] = accelerator(*item);
          const GlibPtr<char> text(gtk_accelerator_name(key, modifiers));
          g_menu_item_set_attribute(row.get(), "accel", "s", text.get());
        }
        items.push_back(
            std::make_unique<ExportedItem>(G_ACTION_MAP(application_), std::move(name), item, chain_));
      }
      g_menu_append_item(section.get(), row.get());
    }
  }

  GtkApplication* application_;
  ActionTarget& chain_;
  GObjectPtr<GMenu> bar_;
  std::string titles_;
  std::vector<ExportedMenu> menus_;
  unsigned nextAction_ = 0;
};

}  // namespace

std::unique_ptr<MenuExport> makeMenuExport(GtkApplication* application, ActionTarget& chain) {
  return std::make_unique<GlibMenuExport>(application, chain);
}

}  // namespace orvalle::platform::linuxos
