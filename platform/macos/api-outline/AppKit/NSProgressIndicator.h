// From: developer.apple.com, "NSProgressIndicator". Binding: xamarin-macios src/appkit.cs.
#pragma once

#import <AppKit/NSView.h>

typedef NS_ENUM(NSUInteger, NSProgressIndicatorStyle) {
  NSProgressIndicatorStyleBar = 0,
};

@interface NSProgressIndicator : NSView
@property(getter=isIndeterminate) BOOL indeterminate;
@property NSProgressIndicatorStyle style;
- (void)startAnimation:(nullable id)sender;
@end
