// From: developer.apple.com, "NSPanel". Binding: xamarin-macios src/appkit.cs.
#pragma once

#import <AppKit/NSWindow.h>

@interface NSPanel : NSWindow
@property(getter=isFloatingPanel) BOOL floatingPanel;
@end
