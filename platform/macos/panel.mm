#include "platform/panel.h"

#import <AppKit/AppKit.h>
#import <QuartzCore/QuartzCore.h>

#include <optional>

#import "platform/macos/factory.h"
#import "platform/macos/text.h"
#include "platform/shown_text.h"

using orvalle::platform::Panel;

@interface OrvallePanelDelegate : NSObject <NSWindowDelegate>
@property(nonatomic, assign) Panel* owner;
@end

@implementation OrvallePanelDelegate

- (void)windowDidMove:(NSNotification*)notification {
  if (self.owner && self.owner->onDidMove) self.owner->onDidMove();
}

@end

namespace orvalle::platform::macos {
namespace {

constexpr NSWindowCollectionBehavior kEverywhere =
    NSWindowCollectionBehaviorCanJoinAllSpaces | NSWindowCollectionBehaviorStationary |
    NSWindowCollectionBehaviorIgnoresCycle | NSWindowCollectionBehaviorFullScreenAuxiliary;

NSRect nativeRect(const base::Rect& rect) {
  return NSMakeRect(rect.origin.x, rect.origin.y, rect.size.width, rect.size.height);
}

NSPanel* makeNativePanel(base::Size size) {
  NSPanel* panel = [[NSPanel alloc] initWithContentRect:NSMakeRect(0, 0, size.width, size.height)
                                              styleMask:NSWindowStyleMaskNonactivatingPanel
                                                backing:NSBackingStoreBuffered
                                                  defer:NO];
  panel.releasedWhenClosed = NO;
  panel.floatingPanel = YES;
  // After the floating, which sets a level of its own.
  panel.level = NSStatusWindowLevel;
  panel.collectionBehavior = kEverywhere;
  panel.hidesOnDeactivate = NO;
  panel.movableByWindowBackground = YES;
  panel.backgroundColor = [NSColor clearColor];
  // Or the corners outside the round ones would be black.
  panel.opaque = NO;
  panel.hasShadow = YES;
  return panel;
}

NSVisualEffectView* makeGlass(const PanelSpec& spec) {
  NSVisualEffectView* glass = [[NSVisualEffectView alloc]
      initWithFrame:NSMakeRect(0, 0, spec.contentSize.width, spec.contentSize.height)];
  glass.autoresizingMask = NSViewWidthSizable | NSViewHeightSizable;
  glass.material = NSVisualEffectMaterialHUDWindow;
  glass.state = NSVisualEffectStateActive;
  glass.blendingMode = NSVisualEffectBlendingModeBehindWindow;
  glass.wantsLayer = YES;
  glass.layer.cornerRadius = spec.cornerRadius;
  glass.layer.masksToBounds = YES;
  return glass;
}

NSTextField* makeLabel(const PanelSpec& spec) {
  NSTextField* label = [NSTextField labelWithString:@""];
  label.frame = nativeRect(spec.labelFrame);
  label.autoresizingMask = NSViewWidthSizable;
  label.alignment = NSTextAlignmentCenter;
  label.font = [NSFont boldSystemFontOfSize:spec.labelFontSize];
  label.textColor = [NSColor whiteColor];
  label.lineBreakMode = NSLineBreakByTruncatingTail;
  return label;
}

class AppKitPanel final : public Panel {
 public:
  explicit AppKitPanel(const PanelSpec& spec)
      : panel_(makeNativePanel(spec.contentSize)),
        label_(makeLabel(spec)),
        delegate_([[OrvallePanelDelegate alloc] init]) {
    NSVisualEffectView* glass = makeGlass(spec);
    [glass addSubview:label_];
    panel_.contentView = glass;
    delegate_.owner = this;
    panel_.delegate = delegate_;
  }
  AppKitPanel(const AppKitPanel&) = delete;
  AppKitPanel& operator=(const AppKitPanel&) = delete;

  ~AppKitPanel() override {
    delegate_.owner = nullptr;
    [panel_ orderOut:nil];
  }

  void setFrameOrigin(base::Point origin) override {
    [panel_ setFrameOrigin:NSMakePoint(origin.x, origin.y)];
  }

  base::Point frameOrigin() const override {
    const NSRect frame = panel_.frame;
    return {frame.origin.x, frame.origin.y};
  }

  void setLabel(const std::string& text, TextColour colour) override {
    if (text_ != text) {
      text_ = text;
      label_.stringValue = nativeText(shownText(text));
    }
    if (colour_ != colour) {
      colour_ = colour;
      label_.textColor = colour == TextColour::SystemRed ? [NSColor systemRedColor] : [NSColor whiteColor];
    }
  }

  void orderFrontRegardless() override {
    if (!panel_.visible) [panel_ orderFrontRegardless];
  }

  void orderOut() override {
    if (panel_.visible) [panel_ orderOut:nil];
  }

 private:
  NSPanel* panel_;
  NSTextField* label_;
  OrvallePanelDelegate* delegate_;
  std::string text_;
  TextColour colour_ = TextColour::White;
};

class AppKitPanels final : public Panels {
 public:
  bool canFloat() const override { return true; }
  std::unique_ptr<Panel> make(const PanelSpec& spec) override { return std::make_unique<AppKitPanel>(spec); }
};

}  // namespace

std::unique_ptr<Panels> makePanels() {
  return std::make_unique<AppKitPanels>();
}

}  // namespace orvalle::platform::macos
