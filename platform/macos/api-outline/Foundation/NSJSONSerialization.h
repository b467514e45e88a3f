// From: developer.apple.com, "NSJSONSerialization". Binding: xamarin-macios src/foundation.cs.
#pragma once

#import <Foundation/NSData.h>
#import <Foundation/NSError.h>

NS_ASSUME_NONNULL_BEGIN

typedef NS_OPTIONS(NSUInteger, NSJSONWritingOptions) {
  NSJSONWritingFragmentsAllowed API_AVAILABLE(macos(10.15)) = (1UL << 2),
};

@interface NSJSONSerialization : NSObject
+ (BOOL)isValidJSONObject:(id)obj;
+ (nullable NSData*)dataWithJSONObject:(id)obj
                               options:(NSJSONWritingOptions)opt
                                 error:(NSError* _Nullable __autoreleasing* _Nullable)error;
@end

NS_ASSUME_NONNULL_END
