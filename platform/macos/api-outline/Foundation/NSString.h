// From: developer.apple.com, "NSString". Checked against: objc2's generated Foundation/NSString.rs (MIT).
#pragma once

#import <Foundation/NSObject.h>

NS_ASSUME_NONNULL_BEGIN

@class NSData;

typedef NSUInteger NSStringEncoding;
enum : NSStringEncoding { NSUTF8StringEncoding = 4 };

@interface NSString : NSObject <NSCopying>
@property(readonly) NSUInteger length;
- (nullable instancetype)initWithBytes:(const void*)bytes
                                length:(NSUInteger)len
                              encoding:(NSStringEncoding)encoding;
- (BOOL)isEqualToString:(NSString*)aString;
- (nullable NSData*)dataUsingEncoding:(NSStringEncoding)encoding allowLossyConversion:(BOOL)lossy;
@end

NS_ASSUME_NONNULL_END
