// From: developer.apple.com, "NSCell". Not checked against a binding.
#pragma once

#import <Foundation/Foundation.h>

@interface NSCell : NSObject <NSCopying>
@property(getter=isScrollable) BOOL scrollable;
@end
