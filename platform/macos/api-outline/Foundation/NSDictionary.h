// From: developer.apple.com, "NSDictionary". Checked against: objc2's generated Foundation/NSDictionary.rs
// (MIT).
#pragma once

#import <Foundation/NSEnumerator.h>

NS_ASSUME_NONNULL_BEGIN

@interface NSDictionary<__covariant KeyType, __covariant ObjectType> : NSObject <NSCopying, NSFastEnumeration>
@property(readonly) NSUInteger count;
- (nullable ObjectType)objectForKeyedSubscript:(KeyType)key;
/// What a dictionary literal calls.
+ (instancetype)dictionaryWithObjects:(const ObjectType _Nonnull[_Nullable])objects
                              forKeys:(const KeyType<NSCopying> _Nonnull[_Nullable])keys
                                count:(NSUInteger)cnt;
@end

NS_ASSUME_NONNULL_END
