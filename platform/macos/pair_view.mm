#include "platform/pair_view.h"

#import <AppKit/AppKit.h>

#include <algorithm>
#include <utility>

#import "platform/macos/factory.h"
#import "platform/macos/text.h"

using orvalle::platform::PairView;

@interface OrvallePairTarget : NSObject
@property(nonatomic, assign) PairView* owner;
@end

@implementation OrvallePairTarget

- (void)press:(NSButton*)sender {
  if (self.owner && self.owner->onButton) self.owner->onButton(static_cast<std::size_t>(sender.tag));
}

@end

namespace orvalle::platform::macos {
namespace {

constexpr CGFloat kFontSize = 11;

NSRect nativeRect(const base::Rect& rect) {
  return NSMakeRect(rect.origin.x, rect.origin.y, rect.size.width, rect.size.height);
}

NSTextField* makeLabel(const base::Rect& frame, const std::string& text) {
  NSTextField* label = [NSTextField labelWithString:nativeText(text)];
  label.frame = nativeRect(frame);
  return label;
}

NSTextField* makeField(const PairField& spec) {
  NSTextField* field = [[NSTextField alloc] initWithFrame:nativeRect(spec.frame)];
  field.placeholderString = nativeText(spec.placeholder);
  field.font = [NSFont monospacedSystemFontOfSize:kFontSize weight:NSFontWeightRegular];
  // A long key scrolls in its line.
  field.usesSingleLineMode = YES;
  [field.cell setScrollable:YES];
  return field;
}

NSColor* nativeColour(MessageColour colour) {
  switch (colour) {
    case MessageColour::SystemGreen:
      return [NSColor systemGreenColor];
    case MessageColour::SystemOrange:
      return [NSColor systemOrangeColor];
    case MessageColour::Label:
      break;
  }
  return [NSColor labelColor];
}

class AppKitPairView final : public PairView {
 public:
  explicit AppKitPairView(const PairViewSpec& spec)
      : target_([[OrvallePairTarget alloc] init]),
        window_([[NSWindow alloc]
            initWithContentRect:NSMakeRect(0, 0, spec.contentSize.width, spec.contentSize.height)
                      styleMask:NSWindowStyleMaskTitled | NSWindowStyleMaskClosable
                        backing:NSBackingStoreBuffered
                          defer:NO]),
        message_(makeLabel(spec.messageFrame, "")) {
    window_.releasedWhenClosed = NO;
    window_.title = nativeText(spec.title);
    target_.owner = this;
    addFields(spec);
    message_.font = [NSFont systemFontOfSize:kFontSize];
    [window_.contentView addSubview:message_];
    addButtons(spec);
    makeKeyLoop();
  }
  AppKitPairView(const AppKitPairView&) = delete;
  AppKitPairView& operator=(const AppKitPairView&) = delete;

  ~AppKitPairView() override {
    target_.owner = nullptr;
    [window_ orderOut:nil];
  }

  std::string fieldText(std::size_t field) const override { return utf8Text(fields_.at(field).stringValue); }

  void setFieldText(std::size_t field, const std::string& text) override {
    fields_.at(field).stringValue = nativeText(text);
  }

  void setMessage(const std::string& text, MessageColour colour) override {
    message_.stringValue = nativeText(text);
    message_.textColor = nativeColour(colour);
    // Who cannot see it is told, without having to look for it.
    if (!text.empty()) announce(message_.stringValue);
  }

  void present() override {
    [window_ center];
    if (window_.miniaturized) [window_ deminiaturize:nil];
    [window_ makeKeyAndOrderFront:nil];
    [window_ makeFirstResponder:fields_.front()];
  }

  void orderOut() override { [window_ orderOut:nil]; }

 private:
  void addFields(const PairViewSpec& spec) {
    for (std::size_t i = 0; i < spec.fields.size(); ++i) {
      NSTextField* label = makeLabel(spec.labels.at(i).frame, spec.labels.at(i).text);
      label.font = [NSFont systemFontOfSize:kFontSize weight:NSFontWeightSemibold];
      label.textColor = [NSColor secondaryLabelColor];
      NSTextField* field = makeField(spec.fields[i]);
      [field setAccessibilityTitleUIElement:label];
      [window_.contentView addSubview:label];
      [window_.contentView addSubview:field];
      fields_.push_back(field);
    }
  }

  void announce(NSString* text) {
    NSAccessibilityPostNotificationWithUserInfo(
        window_, NSAccessibilityAnnouncementRequestedNotification, @{
          NSAccessibilityAnnouncementKey : text,
          NSAccessibilityPriorityKey : @(NSAccessibilityPriorityHigh)
        });
  }

  void addButtons(const PairViewSpec& spec) {
    for (std::size_t i = 0; i < spec.buttons.size(); ++i) {
      NSButton* button = [NSButton buttonWithTitle:nativeText(spec.buttons[i].title)
                                            target:target_
                                            action:@selector(press:)];
      button.frame = nativeRect(spec.buttons[i].frame);
      button.bezelStyle = NSBezelStyleRounded;
      button.tag = static_cast<NSInteger>(i);
      if (spec.buttons[i].isDefault) button.keyEquivalent = @"\r";
      [window_.contentView addSubview:button];
      buttons_.push_back(button);
    }
  }

  /// The order in which Tab goes: the fields, then the buttons, then the first field again.
  void makeKeyLoop() {
    std::vector<NSView*> views(fields_.begin(), fields_.end());
    views.insert(views.end(), buttons_.begin(), buttons_.end());
    for (std::size_t i = 0; i < views.size(); ++i) views[i].nextKeyView = views[(i + 1) % views.size()];
    window_.initialFirstResponder = views.front();
  }

  OrvallePairTarget* target_;
  NSWindow* window_;
  std::vector<NSTextField*> fields_;
  std::vector<NSButton*> buttons_;
  NSTextField* message_;
};

class AppKitPairViews final : public PairViews {
 public:
  std::unique_ptr<PairView> make(const PairViewSpec& spec) override {
    return std::make_unique<AppKitPairView>(spec);
  }
};

}  // namespace

std::unique_ptr<PairViews> makePairViews() {
  return std::make_unique<AppKitPairViews>();
}

}  // namespace orvalle::platform::macos
