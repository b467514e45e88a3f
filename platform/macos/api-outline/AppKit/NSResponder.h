// From: developer.apple.com, "NSResponder". Binding: xamarin-macios src/appkit.cs.
#pragma once

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

@class NSEvent;

@interface NSResponder : NSObject
- (void)mouseDown:(NSEvent*)event;
@end

NS_ASSUME_NONNULL_END
