#pragma once

#import <AppKit/AppKit.h>

#include <memory>
#include <optional>

#import "platform/macos/factory.h"

namespace orvalle::contract {

class NativeScreenRig {
 public:
  platform::Screen& screen() { return *screen_; }
  /// The screen with the menu bar, or the window that has the keyboard; absent without one.
  std::optional<base::Rect> whole() {
    NSScreen* main = [NSScreen mainScreen];
    if (!main) return {};
    const NSRect frame = main.frame;
    return base::Rect{{frame.origin.x, frame.origin.y}, {frame.size.width, frame.size.height}};
  }

 private:
  std::unique_ptr<platform::Application> application_ = platform::macos::makeApplication();
  std::unique_ptr<platform::Screen> screen_ = platform::macos::makeScreen();
};

}  // namespace orvalle::contract
