// From: developer.apple.com, "NSApplication", "NSApplicationDelegate". Checked against: xamarin-macios
// src/appkit.cs.
#pragma once

#import <AppKit/NSResponder.h>

NS_ASSUME_NONNULL_BEGIN

@class NSMenu;
@class NSWindow;
@protocol NSApplicationDelegate;

typedef NS_ENUM(NSInteger, NSApplicationActivationPolicy) {
  NSApplicationActivationPolicyRegular = 0,
};

@interface NSApplication : NSResponder
@property(class, readonly, strong) __kindof NSApplication* sharedApplication;
@property(nullable, weak) id<NSApplicationDelegate> delegate;
- (void)activateIgnoringOtherApps:(BOOL)flag;
- (BOOL)setActivationPolicy:(NSApplicationActivationPolicy)activationPolicy;
- (void)run;
- (void)stop:(nullable id)sender;
- (void)terminate:(nullable id)sender;
- (void)postEvent:(NSEvent*)event atStart:(BOOL)flag;
@property(readonly, copy) NSArray<NSWindow*>* windows;
@property(readonly, copy) NSArray<NSWindow*>* orderedWindows;
@property(nullable, strong) NSMenu* mainMenu;
@property(nullable, strong) NSMenu* windowsMenu;
@property(nullable, strong) NSMenu* helpMenu;
- (BOOL)sendAction:(SEL)action to:(nullable id)target from:(nullable id)sender;
- (nullable id)targetForAction:(SEL)action to:(nullable id)target from:(nullable id)sender;
@end

@protocol NSApplicationDelegate <NSObject>
@optional
- (void)applicationDidFinishLaunching:(NSNotification*)notification;
- (BOOL)applicationShouldTerminateAfterLastWindowClosed:(NSApplication*)sender;
- (BOOL)applicationShouldHandleReopen:(NSApplication*)sender hasVisibleWindows:(BOOL)flag;
- (void)application:(NSApplication*)application openURLs:(NSArray<NSURL*>*)urls API_AVAILABLE(macos(10.13));
- (BOOL)applicationSupportsSecureRestorableState:(NSApplication*)app API_AVAILABLE(macos(12.0));
@end

NS_ASSUME_NONNULL_END
