#pragma once

#import <AppKit/AppKit.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "link/pair_window.h"
#import "platform/macos/factory.h"
#import "platform/macos/text.h"
#include "tests/contract/loop.h"

namespace orvalle::contract {

/// The native window and the user in front of it.
class NativePairRig {
 public:
  std::unique_ptr<platform::PairView> make() { return views_->make(link::pairWindowSpec()); }
  void settle() { runFor(std::chrono::milliseconds(100)); }
  bool visible() { return window().visible; }
  std::string message() { return platform::macos::utf8Text(texts(NO).at(3).stringValue); }
  void press(std::size_t button) {
    std::vector<NSButton*> buttons;
    for (NSView* view in window().contentView.subviews) {
      if ([view isKindOfClass:[NSButton class]]) buttons.push_back(static_cast<NSButton*>(view));
    }
    [buttons.at(button) performClick:nil];
  }
  void type(std::size_t field, const std::string& text) {
    texts(YES).at(field).stringValue = platform::macos::nativeText(text);
  }

 private:
  /// The latest window of this title.
  NSWindow* window() {
    NSWindow* found = nil;
    for (NSWindow* each in [NSApplication sharedApplication].windows) {
      if ([each.title isEqualToString:platform::macos::nativeText(link::pairWindowSpec().title)])
        found = each;
    }
    if (!found) throw std::runtime_error("no window");
    return found;
  }
  /// The fields or the labels, in the order in which they were put there.
  std::vector<NSTextField*> texts(BOOL editable) {
    std::vector<NSTextField*> found;
    for (NSView* view in window().contentView.subviews) {
      if (![view isKindOfClass:[NSTextField class]]) continue;
      auto* text = static_cast<NSTextField*>(view);
      if (text.editable == editable) found.push_back(text);
    }
    return found;
  }

  std::unique_ptr<platform::Application> application_ = platform::macos::makeApplication();
  std::unique_ptr<platform::PairViews> views_ = platform::macos::makePairViews();
};

}  // namespace orvalle::contract
