// From: developer.apple.com, "NSError". Not checked against a binding.
#pragma once

#import <Foundation/NSObject.h>

NS_ASSUME_NONNULL_BEGIN

@class NSString;

@interface NSError : NSObject <NSCopying>
@property(readonly, copy) NSString* domain;
@property(readonly) NSInteger code;
@property(readonly, copy) NSString* localizedDescription;
@end

NS_ASSUME_NONNULL_END
