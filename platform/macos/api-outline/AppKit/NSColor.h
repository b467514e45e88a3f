// From: developer.apple.com, "NSColor". Checked against: objc2's generated AppKit/NSColor.rs (MIT).
#pragma once

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

@interface NSColor : NSObject <NSCopying>
@property(class, strong, readonly) NSColor* blackColor;
@property(class, strong, readonly) NSColor* whiteColor;
@property(class, strong, readonly) NSColor* clearColor;
@property(class, strong, readonly) NSColor* labelColor;
@property(class, strong, readonly) NSColor* secondaryLabelColor;
@property(class, strong, readonly) NSColor* systemRedColor;
@property(class, strong, readonly) NSColor* systemGreenColor;
@property(class, strong, readonly) NSColor* systemOrangeColor;
- (NSColor*)colorWithAlphaComponent:(CGFloat)alpha;
- (void)setFill;
- (void)setStroke;
@end

NS_ASSUME_NONNULL_END
