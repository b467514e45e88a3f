#include "platform/session_watch.h"

#import <AppKit/AppKit.h>

#import "platform/macos/factory.h"

using orvalle::platform::SessionDelegate;

/// What the workspace tells of the machine, and the login window of the screen.
@interface OrvalleSessionObserver : NSObject
@property(nonatomic, assign) SessionDelegate* owner;
@property(nonatomic, assign) BOOL locked;
- (void)willSleep:(NSNotification*)notification;
- (void)didWake:(NSNotification*)notification;
- (void)didLock:(NSNotification*)notification;
- (void)didUnlock:(NSNotification*)notification;
@end

@implementation OrvalleSessionObserver

- (void)willSleep:(NSNotification*)notification {
  if (self.owner) self.owner->willSleep();
}

- (void)didWake:(NSNotification*)notification {
  if (self.owner) self.owner->didWake();
}

- (void)didLock:(NSNotification*)notification {
  if (self.locked) return;
  self.locked = YES;
  if (self.owner) self.owner->didLock();
}

- (void)didUnlock:(NSNotification*)notification {
  if (!self.locked) return;
  self.locked = NO;
  if (self.owner) self.owner->didUnlock();
}

@end

namespace orvalle::platform::macos {
namespace {

class WorkspaceSessionWatch final : public SessionWatch {
 public:
  WorkspaceSessionWatch() : observer_([[OrvalleSessionObserver alloc] init]) {
    NSNotificationCenter* workspace = [NSWorkspace sharedWorkspace].notificationCenter;
    [workspace addObserver:observer_
                  selector:@selector(willSleep:)
                      name:NSWorkspaceWillSleepNotification
                    object:nil];
    [workspace addObserver:observer_
                  selector:@selector(didWake:)
                      name:NSWorkspaceDidWakeNotification
                    object:nil];
    NSNotificationCenter* everybody = [NSDistributedNotificationCenter defaultCenter];
    [everybody addObserver:observer_
                  selector:@selector(didLock:)
                      name:@"com.apple.screenIsLocked"
                    object:nil];
    [everybody addObserver:observer_
                  selector:@selector(didUnlock:)
                      name:@"com.apple.screenIsUnlocked"
                    object:nil];
  }
  WorkspaceSessionWatch(const WorkspaceSessionWatch&) = delete;
  WorkspaceSessionWatch& operator=(const WorkspaceSessionWatch&) = delete;

  ~WorkspaceSessionWatch() override {
    [[NSWorkspace sharedWorkspace].notificationCenter removeObserver:observer_];
    [[NSDistributedNotificationCenter defaultCenter] removeObserver:observer_];
  }

  void setDelegate(SessionDelegate* delegate) override { observer_.owner = delegate; }

 private:
  OrvalleSessionObserver* observer_;
};

}  // namespace

std::unique_ptr<SessionWatch> makeSessionWatch() {
  return std::make_unique<WorkspaceSessionWatch>();
}

}  // namespace orvalle::platform::macos
