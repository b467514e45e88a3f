// From: developer.apple.com, "NSAccessibilityProtocol", "NSAccessibilityPostNotificationWithUserInfo".
// Checked against: macios src/appkit.cs; objc2's generated AppKit/NSAccessibilityConstants.rs (MIT).
#pragma once

#import <AppKit/NSView.h>

NS_ASSUME_NONNULL_BEGIN

/// As far as used of what every view adopts.
@interface NSView (NSAccessibility)
- (void)setAccessibilityTitleUIElement:(nullable id)accessibilityTitleUIElement;
@end

typedef NSString* NSAccessibilityNotificationName;
typedef NSString* NSAccessibilityNotificationUserInfoKey;

typedef NS_ENUM(NSInteger, NSAccessibilityPriorityLevel) {
  NSAccessibilityPriorityHigh = 90,
};

extern "C" {
extern NSAccessibilityNotificationName const NSAccessibilityAnnouncementRequestedNotification
    API_AVAILABLE(macos(10.7));
extern NSAccessibilityNotificationUserInfoKey const NSAccessibilityAnnouncementKey API_AVAILABLE(macos(10.7));
extern NSAccessibilityNotificationUserInfoKey const NSAccessibilityPriorityKey API_AVAILABLE(macos(10.9));

void NSAccessibilityPostNotificationWithUserInfo(
    id element, NSAccessibilityNotificationName notification,
    NSDictionary<NSAccessibilityNotificationUserInfoKey, id>* _Nullable userInfo) API_AVAILABLE(macos(10.7));
}

NS_ASSUME_NONNULL_END
