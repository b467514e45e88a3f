// From: developer.apple.com, "NSHTTPURLResponse". Binding: xamarin-macios src/foundation.cs.
#pragma once

#import <Foundation/NSURL.h>

NS_ASSUME_NONNULL_BEGIN

@interface NSURLResponse : NSObject <NSCopying>
@property(nullable, readonly, copy) NSURL* URL;
@end

@interface NSHTTPURLResponse : NSURLResponse
@property(readonly) NSInteger statusCode;
@end

NS_ASSUME_NONNULL_END
