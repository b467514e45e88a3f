// From: developer.apple.com, "NSAccessibilityProtocol". Checked against: macios src/appkit.cs.
#pragma once

#import <AppKit/NSView.h>

NS_ASSUME_NONNULL_BEGIN

/// As far as used of what every view adopts.
@interface NSView (NSAccessibility)
- (void)setAccessibilityTitleUIElement:(nullable id)accessibilityTitleUIElement;
@end

NS_ASSUME_NONNULL_END
