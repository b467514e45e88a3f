#pragma once

#import <AppKit/AppKit.h>

#include <algorithm>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#import "platform/macos/factory.h"
#import "platform/macos/text.h"
#include "tests/contract/loop.h"

namespace orvalle::contract {

/// The visible windows of this kind and level.
inline std::vector<NSWindow*> shownWindows(Class kind, NSWindowLevel level) {
  std::vector<NSWindow*> found;
  for (NSWindow* each in [NSApplication sharedApplication].windows) {
    if (each.visible && each.level == level && [each isKindOfClass:kind]) found.push_back(each);
  }
  return found;
}

/// What `view` holds of this kind, at whatever depth, in order, but for what is hidden.
inline void collect(NSView* view, Class kind, std::vector<NSView*>& found) {
  if (view.hidden) return;
  if ([view isKindOfClass:kind]) found.push_back(view);
  for (NSView* child in view.subviews) collect(child, kind, found);
}

/// Alerts as they are without a window that could hold them up as a sheet.
class NativeAlertsRig {
 public:
  platform::Alerts& alerts() { return *alerts_; }
  /// The first text that is not empty.
  std::string message() {
    for (NSView* view : all([NSTextField class])) {
      const auto text = platform::macos::utf8Text(static_cast<NSTextField*>(view).stringValue);
      if (!text.empty()) return text;
    }
    throw std::runtime_error("no text");
  }
  void press(std::size_t button) {
    std::vector<NSButton*> buttons;
    for (NSView* view : all([NSButton class])) buttons.push_back(static_cast<NSButton*>(view));
    // Wherever the system has put them: the tags are in the order in which they were added.
    std::sort(buttons.begin(), buttons.end(), [](NSButton* a, NSButton* b) { return a.tag < b.tag; });
    [buttons.at(button) performClick:nil];
  }
  bool open() { return !onShow().empty(); }

 private:
  static std::vector<NSWindow*> onShow() { return shownWindows([NSPanel class], NSModalPanelWindowLevel); }
  static std::vector<NSView*> all(Class kind) {
    if (!runUntil([] { return onShow().size() == 1; })) throw std::runtime_error("not exactly one alert");
    std::vector<NSView*> found;
    collect(onShow()[0].contentView, kind, found);
    return found;
  }

  std::unique_ptr<platform::Application> application_ = platform::macos::makeApplication();
  std::unique_ptr<platform::Alerts> alerts_ = platform::macos::makeAlerts();
};

class NativeOpenPanelRig {
 public:
  /// Another process shows the files, and takes a choice from nobody but the user.
  static constexpr bool kChooses = false;

  platform::OpenPanel& panel() { return *panel_; }
  void choose(const std::string&) { throw std::logic_error("nobody can choose"); }
  void cancel() {
    NSOpenPanel* shown = nil;
    runUntil([&] {
      for (NSWindow* each in [NSApplication sharedApplication].windows) {
        if (each.visible && [each isKindOfClass:[NSOpenPanel class]]) shown = static_cast<NSOpenPanel*>(each);
      }
      return shown != nil;
    });
    if (!shown) throw std::runtime_error("no panel");
    [shown cancel:nil];
  }
  void settle() { runFor(std::chrono::seconds(1)); }

 private:
  std::unique_ptr<platform::Application> application_ = platform::macos::makeApplication();
  std::unique_ptr<platform::OpenPanel> panel_ = platform::macos::makeOpenPanel();
};

}  // namespace orvalle::contract
