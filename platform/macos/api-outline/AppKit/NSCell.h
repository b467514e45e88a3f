// From: developer.apple.com, "NSCell". Binding: xamarin-macios src/appkit.cs.
#pragma once

#import <Foundation/Foundation.h>

@interface NSCell : NSObject <NSCopying>
@property(getter=isScrollable) BOOL scrollable;
@end
