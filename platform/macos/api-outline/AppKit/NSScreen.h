// From: developer.apple.com, "NSScreen". Binding: xamarin-macios src/appkit.cs.
#pragma once

#import <Foundation/Foundation.h>

@interface NSScreen : NSObject
@property(class, nullable, readonly, strong) NSScreen* mainScreen;
@property(readonly) NSRect visibleFrame;
@end
