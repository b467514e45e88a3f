// From: developer.apple.com, "NSResponder". Not checked against a binding.
#pragma once

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

@class NSEvent;

@interface NSResponder : NSObject
- (void)mouseDown:(NSEvent*)event;
@end

NS_ASSUME_NONNULL_END
