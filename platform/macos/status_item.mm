#include "platform/status_item.h"

#import <AppKit/AppKit.h>

#include <optional>
#include <utility>

#import "platform/macos/drawing_appkit.h"
#import "platform/macos/factory.h"
#import "platform/macos/menu_mirror.h"
#import "platform/macos/text.h"
#include "platform/shown_text.h"

namespace orvalle::platform::macos {
namespace {

class AppKitStatusItem final : public StatusItem {
 public:
  explicit AppKitStatusItem(ActionTarget& chain)
      : chain_(chain),
        item_([[NSStatusBar systemStatusBar] statusItemWithLength:NSVariableStatusItemLength]),
        later_([this] { showToolTip(); }) {}
  AppKitStatusItem(const AppKitStatusItem&) = delete;
  AppKitStatusItem& operator=(const AppKitStatusItem&) = delete;

  ~AppKitStatusItem() override { [[NSStatusBar systemStatusBar] removeStatusItem:item_]; }

  bool hasButton() const override { return item_.button != nil; }

  // Where the bar has no room for it, the system does not say so.
  bool isShown() const override { return true; }

  void setFace(const StatusFace& face) override {
    if (face_ == face) return;
    NSStatusBarButton* button = item_.button;
    if (!face_ || face_->image != face.image) button.image = nativeImage(face.image);
    button.imagePosition = face.imagePosition == ImagePosition::Right ? NSImageRight : NSImageLeft;
    if (!face_ || face_->title != face.title) button.title = nativeText(shownText(face.title));
    button.alphaValue = face.alpha;
    face_ = face;
  }

  void setMenu(std::shared_ptr<Menu> menu) override {
    changes_ = menu->onChange([this] { later_.ask(); });
    model_ = menu;
    mirror_ = std::make_unique<MenuMirror>(std::move(menu), chain_);
    item_.menu = mirror_->native();
    showToolTip();
  }

 private:
  void showToolTip() {
    const auto& items = model_->items();
    NSString* text = items.empty() ? @"" : nativeText(shownText(items.front()->title()));
    NSString* shown = item_.button.toolTip;
    if (!shown || ![shown isEqualToString:text]) item_.button.toolTip = text;
  }

  ActionTarget& chain_;
  NSStatusItem* item_;
  std::optional<StatusFace> face_;
  std::shared_ptr<Menu> model_;
  std::unique_ptr<MenuMirror> mirror_;
  LookLater later_;
  base::Subscription changes_;
};

class AppKitStatusBar final : public StatusBar {
 public:
  explicit AppKitStatusBar(Application& application) : application_(application) {}

  std::unique_ptr<StatusItem> makeItem() override {
    return std::make_unique<AppKitStatusItem>(application_.responderChain());
  }

 private:
  Application& application_;
};

}  // namespace

std::unique_ptr<StatusBar> makeStatusBar(Application& application) {
  return std::make_unique<AppKitStatusBar>(application);
}

}  // namespace orvalle::platform::macos
