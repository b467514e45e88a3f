#include "platform/main_menu.h"

#include <utility>

#include "platform/linux/factory.h"
#include "platform/linux/key_equivalents.h"
#include "platform/linux/look_later.h"
#include "platform/linux/menu_export.h"
#include "platform/linux/menu_popup.h"

namespace orvalle::platform::linuxos {
namespace {

class GtkMainMenu final : public NativeMainMenu {
 public:
  explicit GtkMainMenu(NativeApplication& application)
      : chain_(application.responderChain()),
        root_(std::make_shared<Menu>()),
        export_(makeMenuExport(application.gtk(), chain_)),
        updateExport_([this] { export_->update(*root_->items().front()->submenu()); }),
        changes_(root_->onChange([this] { updateExport_.ask(); })) {}

  void show(std::shared_ptr<Menu> bar, std::shared_ptr<Menu>, std::shared_ptr<Menu>) override {
    root_->replace(0, root_->items().size(), {MenuItem::opening("", std::move(bar))});
  }

  GtkWidget* makePopup() override { return makeMenuPopup(root_, chain_); }

  bool handleKey(GdkEventKey* event) override {
    const auto item = itemForKey(*root_, keyEquivalent(readKeyPress(*event)), chain_);
    if (item) item->choose(chain_);
    return item != nullptr;
  }

 private:
  ActionTarget& chain_;
  /// Its only item opens the menu bar on show: who follows it learns of another bar, too.
  std::shared_ptr<Menu> root_;
  std::unique_ptr<MenuExport> export_;
  LookLater updateExport_;
  base::Subscription changes_;
};

}  // namespace

std::unique_ptr<NativeMainMenu> makeMainMenu(NativeApplication& application) {
  return std::make_unique<GtkMainMenu>(application);
}

}  // namespace orvalle::platform::linuxos
