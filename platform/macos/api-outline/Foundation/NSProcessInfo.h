// From: developer.apple.com, "NSProcessInfo". Checked against: objc2's generated Foundation/NSProcessInfo.rs
// (MIT).
#pragma once

#import <Foundation/NSObject.h>

NS_ASSUME_NONNULL_BEGIN

@class NSString;

typedef NS_OPTIONS(uint64_t, NSActivityOptions) {
  NSActivityUserInitiatedAllowingIdleSystemSleep = 0x00EFFFFF,
};

@interface NSProcessInfo : NSObject
@property(class, readonly, strong) NSProcessInfo* processInfo;
- (id<NSObject>)beginActivityWithOptions:(NSActivityOptions)options
                                  reason:(NSString*)reason API_AVAILABLE(macos(10.9));
- (void)endActivity:(id<NSObject>)activity API_AVAILABLE(macos(10.9));
@end

NS_ASSUME_NONNULL_END
