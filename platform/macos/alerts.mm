#include "platform/alerts.h"

#import <AppKit/AppKit.h>
#import <dispatch/dispatch.h>

#include <utility>

#include "base/liveness.h"
#include "platform/alert_queue.h"
#import "platform/macos/factory.h"
#import "platform/macos/text.h"

using Answered = orvalle::platform::AlertQueue::Answered;

@interface OrvalleAlertTarget : NSObject
- (void)listen:(Answered)answered;
@end

@implementation OrvalleAlertTarget {
  Answered _answered;
}

- (void)listen:(Answered)answered {
  _answered = std::move(answered);
}

- (void)press:(NSButton*)sender {
  // The answer does away with the dialog.
  const auto answered = std::exchange(_answered, nullptr);
  if (answered) answered(static_cast<std::size_t>(sender.tag));
}

@end

namespace orvalle::platform::macos {
namespace {

/// The frontmost window that can hold the alert up as a sheet.
NSWindow* frontWindow() {
  for (NSWindow* window in [NSApplication sharedApplication].orderedWindows) {
    if (window.visible && window.canBecomeMainWindow && !window.attachedSheet) return window;
  }
  return nil;
}

NSProgressIndicator* makeBar() {
  NSProgressIndicator* bar = [[NSProgressIndicator alloc]
      initWithFrame:NSMakeRect(0, 0, kProgressBarSize.width, kProgressBarSize.height)];
  bar.style = NSProgressIndicatorStyleBar;
  bar.indeterminate = YES;
  [bar startAnimation:nil];
  return bar;
}

/// A sheet on the window in front; a window of its own where there is none, since the system's own way of
/// showing one would hold up everything else.
class AppKitDialog final : public AlertQueue::Dialog {
 public:
  AppKitDialog(const Alert& alert, bool progress, Answered answered)
      : alert_([[NSAlert alloc] init]), parent_(frontWindow()) {
    alert_.messageText = nativeText(alert.message);
    alert_.informativeText = nativeText(alert.informative);
    for (const auto& title : alert.buttons) [alert_ addButtonWithTitle:nativeText(title)];
    assignKeys(alert);
    if (progress) alert_.accessoryView = makeBar();
    if (parent_) {
      showAsSheet(std::move(answered));
    } else {
      showAlone(std::move(answered));
    }
  }

  ~AppKitDialog() override {
    [target_ listen:nullptr];
    if (!parent_) {
      [alert_.window orderOut:nil];
    } else if (std::exchange(open_, false)) {
      [parent_ endSheet:alert_.window];
    }
  }

 private:
  void assignKeys(const Alert& alert) {
    const std::size_t closing = alert.closing.value_or(alert.buttons.size() - 1);
    for (std::size_t i = 0; i < alert.buttons.size(); ++i) {
      NSString* key = @"";
      if (i == closing) key = @"\033";
      if (i == alert.returnButton) key = @"\r";
      alert_.buttons[i].keyEquivalent = key;
    }
  }

  void showAsSheet(Answered answered) {
    const std::function<void(NSModalResponse)> ended =
        liveness_.guard([this, answered = std::move(answered)](NSModalResponse response) {
          if (!std::exchange(open_, false)) return;
          // The answer does away with this dialog.
          const auto told = answered;
          told(static_cast<std::size_t>(response - NSAlertFirstButtonReturn));
        });
    [alert_ beginSheetModalForWindow:parent_
                   completionHandler:^(NSModalResponse response) {
                     // Later, when the sheet has left room for the next.
                     dispatch_async(dispatch_get_main_queue(), ^{
                       ended(response);
                     });
                   }];
  }

  void showAlone(Answered answered) {
    target_ = [[OrvalleAlertTarget alloc] init];
    [target_ listen:std::move(answered)];
    [alert_ layout];
    NSInteger number = 0;
    for (NSButton* button in alert_.buttons) {
      button.tag = number++;
      button.target = target_;
      button.action = @selector(press:);
    }
    NSWindow* window = alert_.window;
    window.level = NSModalPanelWindowLevel;
    window.hidesOnDeactivate = NO;
    [window center];
    [window makeKeyAndOrderFront:nil];
  }

  NSAlert* alert_;
  NSWindow* parent_;
  /// Null for a sheet.
  OrvalleAlertTarget* target_;
  bool open_ = true;
  base::Liveness liveness_;
};

}  // namespace

std::unique_ptr<Alerts> makeAlerts() {
  return std::make_unique<AlertQueue>([](const Alert& alert, bool progress, Answered answered) {
    return std::make_unique<AppKitDialog>(alert, progress, std::move(answered));
  });
}

}  // namespace orvalle::platform::macos
