// From: developer.apple.com, "NSThread". Binding: xamarin-macios src/foundation.cs.
#pragma once

#import <Foundation/NSObject.h>

@interface NSThread : NSObject
@property(class, readonly) BOOL isMainThread;
@end
