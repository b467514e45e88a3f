// From: developer.apple.com, "NSResponder". Checked against: objc2's generated AppKit/NSResponder.rs (MIT).
#pragma once

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

@class NSEvent;

@interface NSResponder : NSObject
- (void)mouseDown:(NSEvent*)event;
@end

NS_ASSUME_NONNULL_END
