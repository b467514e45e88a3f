// From: developer.apple.com, "NSWorkspace". Checked against: objc2's generated AppKit/NSWorkspace.rs (MIT).
#pragma once

#import <AppKit/NSRunningApplication.h>

NS_ASSUME_NONNULL_BEGIN

@interface NSWorkspace : NSObject
@property(class, readonly, strong) NSWorkspace* sharedWorkspace;
@property(nullable, readonly, strong) NSRunningApplication* frontmostApplication;
@property(readonly, strong) NSNotificationCenter* notificationCenter;
- (BOOL)openURL:(NSURL*)url;
@end

extern NSNotificationName NSWorkspaceWillSleepNotification;
extern NSNotificationName NSWorkspaceDidWakeNotification;

NS_ASSUME_NONNULL_END
