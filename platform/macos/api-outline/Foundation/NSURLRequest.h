// From: developer.apple.com, "NSURLRequest". Checked against: objc2's icrate, Foundation/NSURLRequest.rs
// (generated from the SDK's headers, MIT).
#pragma once

#import <Foundation/NSDate.h>
#import <Foundation/NSURL.h>

NS_ASSUME_NONNULL_BEGIN

typedef NS_ENUM(NSUInteger, NSURLRequestCachePolicy) {
  NSURLRequestUseProtocolCachePolicy = 0,
  NSURLRequestReloadIgnoringLocalCacheData = 1,
};

@interface NSURLRequest : NSObject <NSCopying>
+ (instancetype)requestWithURL:(NSURL*)URL
                   cachePolicy:(NSURLRequestCachePolicy)cachePolicy
               timeoutInterval:(NSTimeInterval)timeoutInterval;
@property(nullable, readonly, copy) NSURL* URL;
@end

NS_ASSUME_NONNULL_END
