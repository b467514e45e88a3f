// From: developer.apple.com, "NSBezierPath". Checked against: objc2's icrate, AppKit/NSBezierPath.rs
// (generated from the SDK's headers, MIT).
#pragma once

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

typedef NS_ENUM(NSUInteger, NSLineCapStyle) {
  NSLineCapStyleButt = 0,
  NSLineCapStyleRound = 1,
};

@interface NSBezierPath : NSObject <NSCopying>
+ (NSBezierPath*)bezierPath;
+ (NSBezierPath*)bezierPathWithOvalInRect:(NSRect)rect;
- (void)appendBezierPathWithArcWithCenter:(NSPoint)center
                                   radius:(CGFloat)radius
                               startAngle:(CGFloat)startAngle
                                 endAngle:(CGFloat)endAngle
                                clockwise:(BOOL)clockwise;
@property CGFloat lineWidth;
@property NSLineCapStyle lineCapStyle;
- (void)stroke;
- (void)fill;
@end

NS_ASSUME_NONNULL_END
