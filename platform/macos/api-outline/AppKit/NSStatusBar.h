// From: developer.apple.com, "NSStatusBar", "NSStatusItem", "NSStatusBarButton". Checked against:
// xamarin-macios src/appkit.cs.
#pragma once

#import <AppKit/NSButton.h>

NS_ASSUME_NONNULL_BEGIN

@class NSMenu;

static const CGFloat NSVariableStatusItemLength = -1.0;

@interface NSStatusBarButton : NSButton
@end

@interface NSStatusItem : NSObject
@property(nullable, readonly, strong) NSStatusBarButton* button;
@property(nullable, strong) NSMenu* menu;
@end

@interface NSStatusBar : NSObject
@property(class, readonly, strong) NSStatusBar* systemStatusBar;
- (NSStatusItem*)statusItemWithLength:(CGFloat)length;
- (void)removeStatusItem:(NSStatusItem*)item;
@end

NS_ASSUME_NONNULL_END
