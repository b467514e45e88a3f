#include "platform/main_menu.h"

#include <utility>

#import "platform/macos/factory.h"
#import "platform/macos/menu_mirror.h"

namespace orvalle::platform::macos {
namespace {

class AppKitMainMenu final : public MainMenu {
 public:
  explicit AppKitMainMenu(Application& application) : chain_(application.responderChain()) {}

  void show(std::shared_ptr<Menu> bar, std::shared_ptr<Menu> windows, std::shared_ptr<Menu> help) override {
    mirror_ = std::make_unique<MenuMirror>(std::move(bar), chain_);
    NSApplication* application = [NSApplication sharedApplication];
    application.mainMenu = mirror_->native();
    application.windowsMenu = windows ? mirror_->nativeOf(*windows) : nil;
    application.helpMenu = help ? mirror_->nativeOf(*help) : nil;
  }

 private:
  ActionTarget& chain_;
  std::unique_ptr<MenuMirror> mirror_;
};

}  // namespace

std::unique_ptr<MainMenu> makeMainMenu(Application& application) {
  return std::make_unique<AppKitMainMenu>(application);
}

}  // namespace orvalle::platform::macos
