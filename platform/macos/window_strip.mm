#import "platform/macos/window_strip.h"

#import "platform/macos/text.h"

using orvalle::platform::TitleStrip;

@interface OrvalleStripView : NSView
@property(nonatomic, assign) TitleStrip* owner;
/// The press that is being handled.
@property(nonatomic, strong) NSEvent* press;
@end

@implementation OrvalleStripView

/// The strip moves the window itself.
- (BOOL)mouseDownCanMoveWindow {
  return NO;
}

- (void)mouseDown:(NSEvent*)event {
  if (!self.owner || !self.owner->onMouseDown) return;
  self.press = event;
  self.owner->onMouseDown(static_cast<int>(event.clickCount));
  self.press = nil;
}

@end

namespace orvalle::platform::macos {

WindowStrip::WindowStrip(NSSize contentSize, double height)
    : view_([[OrvalleStripView alloc]
          initWithFrame:NSMakeRect(0, contentSize.height - height, contentSize.width, height)]) {
  view_.owner = this;
  view_.autoresizingMask = NSViewWidthSizable | NSViewMinYMargin;
}

WindowStrip::~WindowStrip() {
  view_.owner = nullptr;
}

NSView* WindowStrip::native() const {
  return view_;
}

void WindowStrip::performWindowDrag() {
  if (NSEvent* press = view_.press) [view_.window performWindowDragWithEvent:press];
}

void WindowStrip::miniaturize() {
  [view_.window miniaturize:nil];
}

void WindowStrip::zoom() {
  [view_.window zoom:nil];
}

std::optional<std::string> WindowStrip::doubleClickAction() const {
  NSString* action = [NSUserDefaults.standardUserDefaults stringForKey:@"AppleActionOnDoubleClick"];
  if (!action) return {};
  return utf8Text(action);
}

}  // namespace orvalle::platform::macos
