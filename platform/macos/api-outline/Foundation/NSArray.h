// From: developer.apple.com, "NSArray". Checked against: xamarin-macios src/foundation.cs.
#pragma once

#import <Foundation/NSEnumerator.h>

NS_ASSUME_NONNULL_BEGIN

@interface NSArray<__covariant ObjectType> : NSObject <NSCopying, NSFastEnumeration>
@property(readonly) NSUInteger count;
- (ObjectType)objectAtIndexedSubscript:(NSUInteger)idx;
/// What an array literal calls.
+ (instancetype)arrayWithObjects:(const ObjectType _Nonnull[_Nullable])objects count:(NSUInteger)cnt;
@property(nullable, nonatomic, readonly) ObjectType firstObject;
@end

@interface NSMutableArray<ObjectType> : NSArray <ObjectType>
+ (instancetype)array;
- (void)addObject:(ObjectType)anObject;
@end

NS_ASSUME_NONNULL_END
