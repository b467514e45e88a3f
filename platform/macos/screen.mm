#include "platform/screen.h"

#import <AppKit/AppKit.h>

#import "platform/macos/factory.h"

namespace orvalle::platform::macos {
namespace {

class AppKitScreen final : public Screen {
 public:
  std::optional<base::Rect> mainVisibleFrame() const override {
    NSScreen* screen = [NSScreen mainScreen];
    if (!screen) return {};
    const NSRect frame = screen.visibleFrame;
    return base::Rect{{frame.origin.x, frame.origin.y}, {frame.size.width, frame.size.height}};
  }
};

}  // namespace

std::unique_ptr<Screen> makeScreen() {
  return std::make_unique<AppKitScreen>();
}

}  // namespace orvalle::platform::macos
