// From: developer.apple.com, "NSError". Checked against: objc2's generated Foundation/NSError.rs (MIT).
#pragma once

#import <Foundation/NSObject.h>

NS_ASSUME_NONNULL_BEGIN

@class NSString;

typedef NSString* NSErrorDomain;

@interface NSError : NSObject <NSCopying>
@property(readonly, copy) NSErrorDomain domain;
@property(readonly) NSInteger code;
@property(readonly, copy) NSString* localizedDescription;
@end

NS_ASSUME_NONNULL_END
