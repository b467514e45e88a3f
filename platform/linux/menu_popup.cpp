#include "platform/linux/menu_popup.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/subscription.h"
#include "platform/linux/glib_ptr.h"
#include "platform/linux/look_later.h"
#include "platform/linux/menu_text.h"

namespace orvalle::platform::linuxos {
namespace {

/// The rows of one menu, in step with its model.
class Rows {
 public:
  Rows(GtkMenuShell* shell, ActionTarget& chain) : shell_(shell), chain_(chain) {}

  void update(const Menu& menu) {
    const auto& items = menu.items();
    std::size_t kept = 0;
    while (kept < rows_.size() && kept < items.size() && rows_[kept]->standsFor(items[kept])) ++kept;
    rows_.resize(kept);
    for (; kept < items.size(); ++kept) {
      rows_.push_back(std::make_unique<Row>(items[kept], chain_));
      gtk_menu_shell_append(shell_, rows_.back()->widget());
    }
    for (const auto& row : rows_) row->update();
  }

 private:
  class Row {
   public:
    Row(std::shared_ptr<MenuItem> item, ActionTarget& chain)
        : item_(std::move(item)), chain_(chain), checkable_(item_->checkable()) {
      widget_ = GObjectPtr<GtkWidget>::share(makeWidget());
      if (item_->isSeparator()) return;
      if (!item_->keyEquivalent().empty()) {
        const auto [key, modifiers] = accelerator(*item_);
        gtk_accel_label_set_accel(GTK_ACCEL_LABEL(gtk_bin_get_child(GTK_BIN(widget_.get()))), key, modifiers);
      }
      if (item_->submenu()) {
        GtkWidget* menu = gtk_menu_new();
        gtk_menu_item_set_submenu(GTK_MENU_ITEM(widget_.get()), menu);
        submenu_ = std::make_unique<Rows>(GTK_MENU_SHELL(menu), chain_);
      } else {
        activated_.emplace(widget_.get(), "activate", G_CALLBACK(&Row::onActivate), this);
      }
    }
    Row(const Row&) = delete;
    Row& operator=(const Row&) = delete;
    ~Row() {
      submenu_.reset();
      gtk_widget_destroy(widget_.get());
    }

    GtkWidget* widget() const { return widget_.get(); }

    /// Whether this can go on standing for the item: a mark needs another kind of row.
    bool standsFor(const std::shared_ptr<MenuItem>& item) const {
      return item == item_ && checkable_ == item->checkable();
    }

    void update() {
      gtk_widget_set_visible(widget_.get(), !item_->hidden());
      if (item_->isSeparator()) return;
      auto* widget = GTK_MENU_ITEM(widget_.get());
      const auto title = shownTitle(*item_);
      if (gtk_menu_item_get_label(widget) != title) gtk_menu_item_set_label(widget, title.c_str());
      gtk_widget_set_sensitive(widget_.get(), item_->usable(chain_));
      if (checkable_) {
        // Setting the mark activates the row.
        marking_ = true;
        gtk_check_menu_item_set_active(GTK_CHECK_MENU_ITEM(widget), item_->checked());
        marking_ = false;
      }
      if (submenu_) submenu_->update(*item_->submenu());
    }

   private:
    GtkWidget* makeWidget() const {
      if (item_->isSeparator()) return gtk_separator_menu_item_new();
      return checkable_ ? gtk_check_menu_item_new_with_label("") : gtk_menu_item_new_with_label("");
    }

    static void onActivate(GtkMenuItem*, gpointer data) {
      auto& row = *static_cast<Row*>(data);
      if (row.marking_) return;
      // The mark is the model's business: GTK has just turned it.
      if (row.checkable_) row.update();
      // The action may do away with the row.
      const auto item = row.item_;
      item->choose(row.chain_);
    }

    std::shared_ptr<MenuItem> item_;
    ActionTarget& chain_;
    bool checkable_;
    GObjectPtr<GtkWidget> widget_;
    bool marking_ = false;
    std::optional<SignalConnection> activated_;
    std::unique_ptr<Rows> submenu_;
  };

  GtkMenuShell* shell_;
  ActionTarget& chain_;
  std::vector<std::unique_ptr<Row>> rows_;
};

/// What keeps a pop-up in step. Belongs to the widget.
class Popup {
 public:
  Popup(GtkWidget* menu, std::shared_ptr<Menu> root, ActionTarget& chain)
      : rows_(GTK_MENU_SHELL(menu), chain),
        root_(std::move(root)),
        later_([this] { update(); }),
        changes_(root_->onChange([this] { later_.ask(); })),
        // What is usable depends on what has the keyboard.
        shown_(menu, "show", G_CALLBACK(&Popup::onShow), this) {
    later_.ask();
  }

 private:
  void update() {
    if (!root_->items().empty()) rows_.update(*root_->items().front()->submenu());
  }

  static void onShow(GtkWidget*, gpointer data) { static_cast<Popup*>(data)->update(); }

  Rows rows_;
  std::shared_ptr<Menu> root_;
  LookLater later_;
  base::Subscription changes_;
  SignalConnection shown_;
};

}  // namespace

GtkWidget* makeMenuPopup(std::shared_ptr<Menu> root, ActionTarget& chain) {
  GtkWidget* menu = gtk_menu_new();
  g_object_set_data_full(G_OBJECT(menu), "orvalle-popup", new Popup(menu, std::move(root), chain),
                         [](gpointer data) { delete static_cast<Popup*>(data); });
  return menu;
}

}  // namespace orvalle::platform::linuxos
