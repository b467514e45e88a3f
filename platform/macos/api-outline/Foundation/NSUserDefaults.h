// From: developer.apple.com, "NSUserDefaults". Binding: xamarin-macios src/foundation.cs.
#pragma once

#import <Foundation/NSObject.h>

NS_ASSUME_NONNULL_BEGIN

@class NSString;

@interface NSUserDefaults : NSObject
@property(class, readonly, strong) NSUserDefaults* standardUserDefaults;
- (instancetype)init NS_DESIGNATED_INITIALIZER;
- (nullable instancetype)initWithSuiteName:(nullable NSString*)suitename NS_DESIGNATED_INITIALIZER;
- (nullable id)objectForKey:(NSString*)defaultName;
- (void)setObject:(nullable id)value forKey:(NSString*)defaultName;
- (nullable NSString*)stringForKey:(NSString*)defaultName;
- (BOOL)synchronize;
@end

NS_ASSUME_NONNULL_END
