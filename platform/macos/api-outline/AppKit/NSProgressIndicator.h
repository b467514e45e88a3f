// From: developer.apple.com, "NSProgressIndicator". Checked against: objc2's icrate,
// AppKit/NSProgressIndicator.rs (generated from the SDK's headers, MIT).
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
