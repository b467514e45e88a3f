// From: developer.apple.com, "NSAlert". Checked against: objc2's icrate, AppKit/NSAlert.rs (generated from
// the SDK's headers, MIT).
#pragma once

#import <AppKit/NSApplication.h>
#import <AppKit/NSButton.h>

NS_ASSUME_NONNULL_BEGIN

@class NSView;
@class NSWindow;

typedef NSInteger NSModalResponse;
enum : NSModalResponse { NSAlertFirstButtonReturn = 1000 };

@interface NSAlert : NSObject
@property(copy) NSString* messageText;
@property(copy) NSString* informativeText;
- (NSButton*)addButtonWithTitle:(NSString*)title;
@property(readonly, copy) NSArray<NSButton*>* buttons;
@property(nullable, strong) NSView* accessoryView;
- (void)layout;
- (void)beginSheetModalForWindow:(NSWindow*)sheetWindow
               completionHandler:(void (^_Nullable)(NSModalResponse returnCode))handler;
@property(readonly, strong) NSWindow* window;
@end

NS_ASSUME_NONNULL_END
