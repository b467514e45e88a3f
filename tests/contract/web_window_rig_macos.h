#pragma once

#import <AppKit/AppKit.h>
#import <WebKit/WebKit.h>

#include <memory>
#include <stdexcept>

#import "platform/macos/factory.h"
#import "platform/macos/text.h"

namespace orvalle::contract {

/// The native window with a real page in it.
class NativeWebWindowRig : public RealPageRig {
 public:
  std::unique_ptr<platform::WebWindow> make() {
    auto made = windows_->make(windowSpec(), owner);
    made->makeKeyAndOrderFront();
    return made;
  }
  /// How often in a row the user has pressed is the window server's to count.
  void press(int times) {
    for (int count = 1; count <= times; ++count) {
      NSEvent* event = [NSEvent mouseEventWithType:NSEventTypeLeftMouseDown
                                          location:NSMakePoint(0, 0)
                                     modifierFlags:0
                                         timestamp:0
                                      windowNumber:0
                                           context:nil
                                       eventNumber:count
                                        clickCount:count
                                          pressure:1];
      if (!event) throw std::runtime_error("no event");
      [strip() mouseDown:event];
    }
  }

 private:
  /// What lies over the page in the latest window.
  static NSView* strip() {
    NSView* found = nil;
    for (NSWindow* window in [NSApplication sharedApplication].windows) {
      if (![window.title isEqualToString:platform::macos::nativeText(windowSpec().title)]) continue;
      for (NSView* view in window.contentView.subviews) {
        if (![view isKindOfClass:[WKWebView class]]) found = view;
      }
    }
    if (!found) throw std::runtime_error("no strip");
    return found;
  }

  std::unique_ptr<platform::Application> application_ = platform::macos::makeApplication();
  std::unique_ptr<platform::MainLoop> loop_ = platform::macos::makeMainLoop();
  std::unique_ptr<platform::WebWindows> windows_ = platform::macos::makeWebWindows(*loop_);
};

}  // namespace orvalle::contract
