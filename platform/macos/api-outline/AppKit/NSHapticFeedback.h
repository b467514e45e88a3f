// From: developer.apple.com, "NSHapticFeedbackManager". Checked against: objc2's icrate,
// AppKit/NSHapticFeedback.rs (generated from the SDK's headers, MIT).
#pragma once

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

typedef NS_ENUM(NSInteger, NSHapticFeedbackPattern) {
  NSHapticFeedbackPatternAlignment = 1,
  NSHapticFeedbackPatternLevelChange = 2,
};

typedef NS_ENUM(NSUInteger, NSHapticFeedbackPerformanceTime) {
  NSHapticFeedbackPerformanceTimeNow = 1,
};

@protocol NSHapticFeedbackPerformer <NSObject>
- (void)performFeedbackPattern:(NSHapticFeedbackPattern)pattern
               performanceTime:(NSHapticFeedbackPerformanceTime)performanceTime;
@end

@interface NSHapticFeedbackManager : NSObject
@property(class, readonly, strong) id<NSHapticFeedbackPerformer> defaultPerformer;
@end

NS_ASSUME_NONNULL_END
