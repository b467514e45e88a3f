// From: developer.apple.com, "NSObject". Checked against: xamarin-macios src/foundation.cs.
#pragma once

#include <objc/objc.h>

NS_ASSUME_NONNULL_BEGIN

@class NSString;

@protocol NSObject
- (BOOL)isEqual:(nullable id)object;
@property(readonly) NSUInteger hash;
@property(readonly, copy) NSString* description;
- (BOOL)isKindOfClass:(Class)aClass;
- (BOOL)conformsToProtocol:(Protocol*)aProtocol;
- (BOOL)respondsToSelector:(SEL)aSelector;
@end

@protocol NSCopying
@end

__attribute__((objc_root_class))
@interface NSObject<NSObject>
+ (instancetype)alloc;
+ (Class)class;
- (instancetype)init NS_DESIGNATED_INITIALIZER;
- (void)dealloc;
/// Of "Key-Value Coding".
- (void)setValue:(nullable id)value forKey:(NSString*)key;
@end

extern "C" SEL _Nonnull NSSelectorFromString(NSString* aSelectorName);

NS_ASSUME_NONNULL_END
