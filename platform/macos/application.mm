#include "platform/application.h"

#import <AppKit/AppKit.h>
#import <dispatch/dispatch.h>

#include <array>
#include <csignal>
#include <string>
#include <vector>

#import "platform/macos/factory.h"
#import "platform/macos/text.h"

using orvalle::platform::ApplicationDelegate;

/// Ends its loop where AppKit's own would end the process: what stands around the loop is still taken down.
@interface OrvalleApplication : NSApplication
@property(nonatomic, assign) ApplicationDelegate* owner;
@end

@implementation OrvalleApplication

- (void)terminate:(nullable id)sender {
  if (!self.owner) return;
  self.owner->applicationWillTerminate();
  self.owner = nullptr;
  [self stop:sender];
  // The loop looks whether it is to go on after an event only.
  NSEvent* event = [NSEvent otherEventWithType:NSEventTypeApplicationDefined
                                      location:NSMakePoint(0, 0)
                                 modifierFlags:0
                                     timestamp:0
                                  windowNumber:0
                                       context:nil
                                       subtype:0
                                         data1:0
                                         data2:0];
  if (event) [self postEvent:event atStart:YES];
}

@end

@interface OrvalleApplicationDelegate : NSObject <NSApplicationDelegate>
@property(nonatomic, assign) ApplicationDelegate* owner;
@property(nonatomic, assign) BOOL launched;
/// The links that started the program: they come before it has launched.
@property(nonatomic, strong, nullable) NSMutableArray<NSURL*>* waiting;
- (void)open:(NSArray<NSURL*>*)urls;
@end

@implementation OrvalleApplicationDelegate

- (void)applicationDidFinishLaunching:(NSNotification*)notification {
  if (self.owner) self.owner->applicationDidFinishLaunching();
  self.launched = YES;
  NSArray<NSURL*>* waiting = self.waiting;
  self.waiting = nil;
  if (waiting) [self open:waiting];
}

- (void)application:(NSApplication*)application openURLs:(NSArray<NSURL*>*)urls {
  if (self.launched) {
    [self open:urls];
  } else {
    if (!self.waiting) self.waiting = [[NSMutableArray alloc] init];
    for (NSURL* url in urls) [self.waiting addObject:url];
  }
}

- (void)open:(NSArray<NSURL*>*)urls {
  std::vector<std::string> texts;
  for (NSURL* url in urls) texts.push_back(orvalle::platform::macos::utf8Text(url.absoluteString));
  if (self.owner) self.owner->applicationOpen(texts);
}

- (BOOL)applicationShouldTerminateAfterLastWindowClosed:(NSApplication*)sender {
  return self.owner && self.owner->applicationShouldTerminateAfterLastWindowClosed();
}

- (BOOL)applicationShouldHandleReopen:(NSApplication*)sender hasVisibleWindows:(BOOL)flag {
  return self.owner && self.owner->applicationShouldHandleReopen(flag);
}

- (BOOL)applicationSupportsSecureRestorableState:(NSApplication*)app {
  return YES;
}

@end

namespace orvalle::platform::macos {
namespace {

/// Ends the application in order when one of these comes.
constexpr std::array kSignals = {SIGTERM, SIGINT, SIGHUP};

SEL selectorOf(std::string_view action) {
  return NSSelectorFromString(nativeText(action));
}

class AppKitApplication final : public Application, private ActionTarget {
 public:
  AppKitApplication()
      : application_([OrvalleApplication sharedApplication]),
        native_([[OrvalleApplicationDelegate alloc] init]) {
    application_.delegate = native_;
    [application_ setActivationPolicy:NSApplicationActivationPolicyRegular];
  }
  AppKitApplication(const AppKitApplication&) = delete;
  AppKitApplication& operator=(const AppKitApplication&) = delete;

  ~AppKitApplication() override {
    for (dispatch_source_t signal : signals_) {
      if (signal) dispatch_source_cancel(signal);
    }
    application_.delegate = nil;
  }

  int run(ApplicationDelegate& delegate) override {
    delegate_ = &delegate;
    application_.owner = &delegate;
    native_.owner = &delegate;
    followSignals();
    // A countdown in the status bar has no window on the screen that would keep the system from putting the
    // program's timers off.
    NSProcessInfo* process = [NSProcessInfo processInfo];
    const id<NSObject> activity =
        [process beginActivityWithOptions:NSActivityUserInitiatedAllowingIdleSystemSleep
                                   reason:@"Conto alla rovescia"];
    [application_ run];
    [process endActivity:activity];
    application_.owner = nullptr;
    native_.owner = nullptr;
    delegate_ = nullptr;
    return 0;
  }

  void activate() override { [application_ activateIgnoringOtherApps:YES]; }
  void terminate() override { [application_ terminate:nil]; }
  ActionTarget& responderChain() override { return *this; }

 private:
  bool responds(std::string_view action) const override {
    return [application_ targetForAction:selectorOf(action) to:nil from:nil] != nil ||
           (delegate_ && delegate_->responds(action));
  }

  void perform(std::string_view action, MenuItem& sender) override {
    if ([application_ sendAction:selectorOf(action) to:nil from:nil]) return;
    if (delegate_ && delegate_->responds(action)) delegate_->perform(action, sender);
  }

  void followSignals() {
    for (std::size_t i = 0; i < kSignals.size(); ++i) {
      std::signal(kSignals[i], SIG_IGN);
      dispatch_source_t source = dispatch_source_create(
          DISPATCH_SOURCE_TYPE_SIGNAL, static_cast<uintptr_t>(kSignals[i]), 0, dispatch_get_main_queue());
      dispatch_source_set_event_handler(source, ^{
        [[OrvalleApplication sharedApplication] terminate:nil];
      });
      dispatch_resume(source);
      signals_[i] = source;
    }
  }

  OrvalleApplication* application_;
  OrvalleApplicationDelegate* native_;
  ApplicationDelegate* delegate_ = nullptr;
  std::array<dispatch_source_t, kSignals.size()> signals_ = {};
};

}  // namespace

std::unique_ptr<Application> makeApplication() {
  return std::make_unique<AppKitApplication>();
}

}  // namespace orvalle::platform::macos
