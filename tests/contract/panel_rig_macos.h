#pragma once

#import <AppKit/AppKit.h>

#include <memory>
#include <stdexcept>
#include <string>

#import "platform/macos/factory.h"
#import "platform/macos/text.h"
#include "tests/contract/loop.h"

namespace orvalle::contract {

class NativePanelRig {
 public:
  platform::Panels& panels() { return *panels_; }
  void settle() { runFor(std::chrono::milliseconds(400)); }
  bool visible() { return window().visible; }
  std::string text() { return platform::macos::utf8Text(label().stringValue); }
  bool red() { return [label().textColor isEqual:[NSColor systemRedColor]]; }
  /// A drag is the window server's business; what the panel learns of it is that it has moved.
  void drag(base::Point by) {
    const NSRect frame = window().frame;
    [window() setFrameOrigin:NSMakePoint(frame.origin.x + by.x, frame.origin.y + by.y)];
  }

 private:
  /// The latest one.
  NSPanel* window() {
    NSPanel* found = nil;
    for (NSWindow* each in [NSApplication sharedApplication].windows) {
      if ([each isKindOfClass:[NSPanel class]] && each.level == NSStatusWindowLevel)
        found = static_cast<NSPanel*>(each);
    }
    if (!found) throw std::runtime_error("no panel");
    return found;
  }
  NSTextField* label() {
    for (NSView* view in window().contentView.subviews) {
      if ([view isKindOfClass:[NSTextField class]]) return static_cast<NSTextField*>(view);
    }
    throw std::runtime_error("no label");
  }

  std::unique_ptr<platform::Application> application_ = platform::macos::makeApplication();
  std::unique_ptr<platform::Panels> panels_ = platform::macos::makePanels();
};

}  // namespace orvalle::contract
