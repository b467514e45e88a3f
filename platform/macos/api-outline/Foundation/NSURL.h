// From: developer.apple.com, "NSURL". Checked against: objc2's generated Foundation/NSURL.rs (MIT).
#pragma once

#import <Foundation/NSObject.h>

NS_ASSUME_NONNULL_BEGIN

@class NSString;

@interface NSURL : NSObject <NSCopying>
+ (nullable instancetype)URLWithString:(NSString*)URLString;
+ (NSURL*)fileURLWithPath:(NSString*)path;
@property(nullable, readonly, copy) NSString* absoluteString;
@property(nullable, readonly, copy) NSString* path;
@property(readonly) const char* fileSystemRepresentation;
@end

NS_ASSUME_NONNULL_END
