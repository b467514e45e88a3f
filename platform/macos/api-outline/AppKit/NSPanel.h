// From: developer.apple.com, "NSPanel". Checked against: objc2's icrate, AppKit/NSPanel.rs (generated from
// the SDK's headers, MIT).
#pragma once

#import <AppKit/NSWindow.h>

@interface NSPanel : NSWindow
@property(getter=isFloatingPanel) BOOL floatingPanel;
@end
