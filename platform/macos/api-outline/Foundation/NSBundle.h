// From: developer.apple.com, "NSBundle". Checked against: objc2's generated Foundation/NSBundle.rs (MIT).
#pragma once

#import <Foundation/NSDictionary.h>
#import <Foundation/NSURL.h>

NS_ASSUME_NONNULL_BEGIN

@interface NSBundle : NSObject
@property(class, readonly, strong) NSBundle* mainBundle;
+ (nullable instancetype)bundleWithPath:(NSString*)path;
@property(readonly, copy) NSString* bundlePath;
@property(readonly, copy) NSURL* bundleURL;
@property(nullable, readonly, copy) NSString* bundleIdentifier;
@property(nullable, readonly, copy) NSDictionary<NSString*, id>* infoDictionary;
@end

NS_ASSUME_NONNULL_END
