// From: developer.apple.com, "NSImage". Checked against: objc2's icrate, AppKit/NSImage.rs (generated from
// the SDK's headers, MIT).
#pragma once

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

@interface NSImage : NSObject <NSCopying>
+ (NSImage*)imageWithSize:(NSSize)size
                  flipped:(BOOL)drawingHandlerShouldBeCalledWithFlippedContext
           drawingHandler:(BOOL (^)(NSRect dstRect))drawingHandler;
/// The setter of the property `template`, which C++ has no word for.
- (void)setTemplate:(BOOL)isTemplate;
@end

NS_ASSUME_NONNULL_END
