// From: developer.apple.com, "NSScreen". Checked against: objc2's icrate, AppKit/NSScreen.rs (generated
// from the SDK's headers, MIT).
#pragma once

#import <Foundation/Foundation.h>

@interface NSScreen : NSObject
@property(class, nullable, readonly, strong) NSScreen* mainScreen;
@property(readonly) NSRect frame;
@property(readonly) NSRect visibleFrame;
@end
