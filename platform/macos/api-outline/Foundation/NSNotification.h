// From: developer.apple.com, "NSNotification", "NSNotificationCenter". Binding: xamarin-macios
// src/foundation.cs.
#pragma once

#import <Foundation/NSObject.h>

NS_ASSUME_NONNULL_BEGIN

@class NSString;

typedef NSString* NSNotificationName;

@interface NSNotification : NSObject <NSCopying>
@property(nullable, readonly, retain) id object;
@end

@interface NSNotificationCenter : NSObject
@property(class, readonly, strong) NSNotificationCenter* defaultCenter;
- (void)addObserver:(id)observer
           selector:(SEL)aSelector
               name:(nullable NSNotificationName)aName
             object:(nullable id)anObject;
- (void)removeObserver:(id)observer;
@end

@interface NSDistributedNotificationCenter : NSNotificationCenter
+ (NSDistributedNotificationCenter*)defaultCenter;
@end

NS_ASSUME_NONNULL_END
