#pragma once

#import <AppKit/AppKit.h>
#import <dispatch/dispatch.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#import "platform/macos/factory.h"
#import "platform/macos/text.h"
#include "tests/contract/loop.h"

/// Looks at the menu that opens next, and closes it.
@interface OrvalleMenuReader : NSObject
@property(nonatomic, strong) NSMenu* menu;
@end

@implementation OrvalleMenuReader

- (instancetype)init {
  self = [super init];
  if (self) {
    [[NSNotificationCenter defaultCenter] addObserver:self
                                             selector:@selector(began:)
                                                 name:NSMenuDidBeginTrackingNotification
                                               object:nil];
  }
  return self;
}

- (void)dealloc {
  [[NSNotificationCenter defaultCenter] removeObserver:self];
}

- (void)began:(NSNotification*)notification {
  NSMenu* menu = notification.object;
  self.menu = menu;
  // Once it is open.
  dispatch_async(dispatch_get_main_queue(), ^{
    [menu cancelTrackingWithoutAnimation];
  });
}

@end

namespace orvalle::contract {

class NativeStatusBarRig {
 public:
  platform::StatusBar& bar() { return *bar_; }
  void settle() { runFor(std::chrono::milliseconds(100)); }
  bool becomesShown(bool expected) {
    return runUntil([&] { return buttons().empty() != expected; });
  }
  std::string title() { return platform::macos::utf8Text(button().title); }

  std::vector<SeenRow> rows() {
    std::vector<SeenRow> seen;
    for (NSMenuItem* item in openMenu().itemArray) {
      if (item.hidden) continue;
      seen.push_back(item.separatorItem ? kSeparator
                                        : SeenRow{platform::macos::utf8Text(item.title), item.enabled == YES,
                                                  item.state == NSControlStateValueOn ? "✓" : ""});
    }
    return seen;
  }

  void choose(const std::string& title) {
    NSMenu* menu = openMenu();
    const NSInteger row = [menu indexOfItemWithTitle:platform::macos::nativeText(title)];
    if (row < 0) throw std::runtime_error("no such row");
    [menu performActionForItemAtIndex:row];
    settle();
  }

 private:
  static void collect(NSView* view, std::vector<NSStatusBarButton*>& found) {
    if ([view isKindOfClass:[NSStatusBarButton class]])
      found.push_back(static_cast<NSStatusBarButton*>(view));
    for (NSView* child in view.subviews) collect(child, found);
  }
  /// Those of the program, which are in windows of their own.
  static std::vector<NSStatusBarButton*> buttons() {
    std::vector<NSStatusBarButton*> found;
    for (NSWindow* window in [NSApplication sharedApplication].windows) {
      if (NSView* content = window.contentView) collect(content, found);
    }
    return found;
  }
  static NSStatusBarButton* button() {
    const auto found = buttons();
    if (found.size() != 1) throw std::runtime_error("not exactly one status item");
    return found[0];
  }
  /// As it is when the user opens it; null when nothing opens.
  NSMenu* openMenu() {
    reader_.menu = nil;
    [button() performClick:nil];
    return reader_.menu;
  }

  platform::memory::Journal journal_;
  // Its actions are looked for along the application's own chain, too.
  std::unique_ptr<platform::Application> native_ = platform::macos::makeApplication();
  platform::memory::MemoryApplication application_{journal_};
  std::unique_ptr<platform::StatusBar> bar_ = platform::macos::makeStatusBar(application_);
  OrvalleMenuReader* reader_ = [[OrvalleMenuReader alloc] init];
};

}  // namespace orvalle::contract
