// From: developer.apple.com, "NSOperationQueue". Binding: xamarin-macios src/foundation.cs.
#pragma once

#import <Foundation/NSObject.h>

NS_ASSUME_NONNULL_BEGIN

@interface NSOperationQueue : NSObject
@property(class, readonly, strong) NSOperationQueue* mainQueue;
@end

NS_ASSUME_NONNULL_END
