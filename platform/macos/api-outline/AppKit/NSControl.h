// From: developer.apple.com, "NSControl". Checked against: objc2's icrate, AppKit/NSControl.rs (generated
// from the SDK's headers, MIT).
#pragma once

#import <AppKit/NSView.h>

NS_ASSUME_NONNULL_BEGIN

@class NSCell;
@class NSFont;

typedef NS_ENUM(NSInteger, NSTextAlignment) {
  NSTextAlignmentLeft = 0,
#if defined(__arm64__)
  NSTextAlignmentCenter = 1,
#else
  NSTextAlignmentCenter = 2,
#endif
};

typedef NS_ENUM(NSUInteger, NSLineBreakMode) {
  NSLineBreakByTruncatingTail = 4,
};

@interface NSControl : NSView
@property(nullable, weak) id target;
@property(nullable) SEL action;
@property NSInteger tag;
- (void)performClick:(nullable id)sender;
@property(copy) NSString* stringValue;
@property(nullable, strong) NSFont* font;
@property NSTextAlignment alignment;
@property NSLineBreakMode lineBreakMode;
@property BOOL usesSingleLineMode;
@property(nullable, strong) __kindof NSCell* cell;
@end

NS_ASSUME_NONNULL_END
