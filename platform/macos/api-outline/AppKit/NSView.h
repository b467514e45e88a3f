// From: developer.apple.com, "NSView". Checked against: objc2's icrate, AppKit/NSView.rs (generated from
// the SDK's headers, MIT).
#pragma once

#import <AppKit/NSResponder.h>

NS_ASSUME_NONNULL_BEGIN

@class CALayer;
@class NSWindow;

typedef NS_OPTIONS(NSUInteger, NSAutoresizingMaskOptions) {
  NSViewMinXMargin = 1,
  NSViewWidthSizable = 2,
  NSViewMaxXMargin = 4,
  NSViewMinYMargin = 8,
  NSViewHeightSizable = 16,
  NSViewMaxYMargin = 32,
};

@interface NSView : NSResponder
- (instancetype)initWithFrame:(NSRect)frameRect NS_DESIGNATED_INITIALIZER;
@property(nullable, readonly, assign) NSWindow* window;
@property(copy) NSArray<__kindof NSView*>* subviews;
- (void)addSubview:(NSView*)view;
- (void)replaceSubview:(NSView*)oldView with:(NSView*)newView;
@property(nullable, readonly, assign) NSView* superview;
@property NSAutoresizingMaskOptions autoresizingMask;
@property(getter=isHidden) BOOL hidden;
@property NSRect frame;
@property NSRect bounds;
@property(readonly) BOOL mouseDownCanMoveWindow;
@property BOOL wantsLayer;
@property(nullable, strong) CALayer* layer;
@property CGFloat alphaValue;
@property(nullable, copy) NSString* toolTip;
@property(nullable, assign) NSView* nextKeyView;
@end

NS_ASSUME_NONNULL_END
