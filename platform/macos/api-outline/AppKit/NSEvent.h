// From: developer.apple.com, "NSEvent". Checked against: objc2's generated AppKit/NSEvent.rs (MIT).
#pragma once

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

@class NSGraphicsContext;

typedef NS_ENUM(NSUInteger, NSEventType) {
  NSEventTypeLeftMouseDown = 1,
  NSEventTypeApplicationDefined = 15,
};

typedef NSUInteger NSEventModifierFlags;

@interface NSEvent : NSObject <NSCopying>
@property(readonly) NSInteger clickCount;
+ (nullable NSEvent*)mouseEventWithType:(NSEventType)type
                               location:(NSPoint)location
                          modifierFlags:(NSEventModifierFlags)flags
                              timestamp:(NSTimeInterval)time
                           windowNumber:(NSInteger)wNum
                                context:(nullable NSGraphicsContext*)unusedPassNil
                            eventNumber:(NSInteger)eNum
                             clickCount:(NSInteger)cNum
                               pressure:(float)pressure;
+ (nullable NSEvent*)otherEventWithType:(NSEventType)type
                               location:(NSPoint)location
                          modifierFlags:(NSEventModifierFlags)flags
                              timestamp:(NSTimeInterval)time
                           windowNumber:(NSInteger)wNum
                                context:(nullable NSGraphicsContext*)unusedPassNil
                                subtype:(short)subtype
                                  data1:(NSInteger)d1
                                  data2:(NSInteger)d2;
@end

NS_ASSUME_NONNULL_END
