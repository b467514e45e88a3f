// From: developer.apple.com, "NSData". Checked against: xamarin-macios src/foundation.cs.
#pragma once

#import <Foundation/NSObject.h>

NS_ASSUME_NONNULL_BEGIN

@interface NSData : NSObject <NSCopying>
@property(readonly) NSUInteger length;
@property(readonly) const void* bytes;
@end

NS_ASSUME_NONNULL_END
